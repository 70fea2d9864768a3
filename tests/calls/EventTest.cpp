#include "calls/BQLColloqEvent.h"

#include <gtest/gtest.h>

namespace {

TEST(Event, HeadsetEventWithAllTexts) {
    BQLColloqEvent event(17, CALL_STATE_DTMF_KEY, "12#", "12#", "hid/dev");
    EXPECT_EQ(event.type, VEXIL_CALL_EVENT);
    EXPECT_EQ(event.callId, 17);
    EXPECT_EQ(event.vexilState, CALL_STATE_DTMF_KEY);
    EXPECT_EQ(event.name, "12#");
    EXPECT_EQ(event.value, "12#");
    EXPECT_EQ(event.info, "hid/dev");
}

TEST(Event, HeadsetEventWithOnlyTheDevice) {
    BQLColloqEvent event(BQL_NO_CALL_ID, CALL_STATE_DEVICE_CHANGE, "hid/dev");
    EXPECT_EQ(event.type, VEXIL_CALL_EVENT);
    EXPECT_EQ(event.callId, -1);
    EXPECT_EQ(event.vexilState, CALL_STATE_DEVICE_CHANGE);
    EXPECT_TRUE(event.name.empty());
    EXPECT_TRUE(event.value.empty());
    EXPECT_EQ(event.info, "hid/dev");
}

TEST(Event, DialRequestCarriesPhoneAndNumber) {
    BQLColloqEvent event(BQL_COLLOQ_MAKE_CALL_EVENT, "phone", "+15551234");
    EXPECT_EQ(event.type, BQL_COLLOQ_MAKE_CALL_EVENT);
    EXPECT_EQ(event.callId, 0);
    EXPECT_EQ(event.vexilState, 0);
    EXPECT_EQ(event.name, "phone");
    EXPECT_EQ(event.value, "+15551234");
    EXPECT_TRUE(event.info.empty());
}

TEST(Event, ClientEventCarriesKindAndCallOnly) {
    BQLColloqEvent event(INCOMING_CALL_EVENT, 5);
    EXPECT_EQ(event.type, INCOMING_CALL_EVENT);
    EXPECT_EQ(event.callId, 5);
    EXPECT_EQ(event.vexilState, 0);
    EXPECT_TRUE(event.name.empty() && event.value.empty() && event.info.empty());
}

}  // namespace
