// The runtime's event records keep the sizes and field offsets the runtime fills them with.
#include <gtest/gtest.h>

#include <cstddef>

#include "vexilrt/Events.h"

namespace {

TEST(EventRecordLayout, CallStateEventArgsIs1112BytesWithFieldsAtTheirOffsets) {
    EXPECT_EQ(sizeof(CallStateEventArgs), 1112u);
    EXPECT_EQ(offsetof(CallStateEventArgs, callId), 0u);
    EXPECT_EQ(offsetof(CallStateEventArgs, callState), 4u);
    EXPECT_EQ(offsetof(CallStateEventArgs, devicePath), 8u);
    EXPECT_EQ(offsetof(CallStateEventArgs, dtmfKeys), 1048u);
    EXPECT_EQ(offsetof(CallStateEventArgs, dtmfKeys2), 1080u);
}

TEST(EventRecordLayout, CallRequestEventArgsIs2064BytesWithFieldsAtTheirOffsets) {
    EXPECT_EQ(sizeof(CallRequestEventArgs), 2064u);
    EXPECT_EQ(offsetof(CallRequestEventArgs, number), 0u);
    EXPECT_EQ(offsetof(CallRequestEventArgs, alternateNumber), 512u);
    EXPECT_EQ(offsetof(CallRequestEventArgs, devicePath), 1024u);
}

TEST(EventRecordLayout, DeviceStateEventArgsIs1044BytesWithFieldsAtTheirOffsets) {
    EXPECT_EQ(sizeof(DeviceStateEventArgs), 1044u);
    EXPECT_EQ(offsetof(DeviceStateEventArgs, state), 0u);
    EXPECT_EQ(offsetof(DeviceStateEventArgs, devicePath), 4u);
}

TEST(EventRecordLayout, WideCharactersAreThirtyTwoBits) { EXPECT_EQ(sizeof(wchar_t), 4u); }

TEST(EventRecordLayout, CallStateCodesHaveTheirRuntimeValues) {
    EXPECT_EQ(CALL_STATE_ACCEPT_CALL, 1);
    EXPECT_EQ(CALL_STATE_TERMINATE_CALL, 2);
    EXPECT_EQ(CALL_STATE_HOLD_CALL, 3);
    EXPECT_EQ(CALL_STATE_RESUME_CALL, 4);
    EXPECT_EQ(CALL_STATE_MUTEON, 11);
    EXPECT_EQ(CALL_STATE_MUTEOFF, 12);
    EXPECT_EQ(CALL_STATE_DTMF_KEY, 22);
    EXPECT_EQ(CALL_STATE_REJECT_CALL, 23);
    EXPECT_EQ(CALL_STATE_DEVICE_CHANGE, 32);
    EXPECT_EQ(sizeof(eCallState), 4u);
}

}  // namespace
