#include "calls/BQLColloqCall.h"

#include <gtest/gtest.h>

#include "CallRecord.h"

namespace {

BQLColloqCallState loadedState(int clientState) {
    auto record = makeCallRecord(1, clientState, "", "");
    return BQLColloqCall(&record).getState();
}

TEST(Call, ClientStatesMapCoarselyWhenLoaded) {
    for (int idle : {0, 1, 2, 4, 5, 8}) EXPECT_EQ(loadedState(idle), BQL_CALL_IDLE) << idle;
    EXPECT_EQ(loadedState(3), BQL_CALL_OUTGOING);
    EXPECT_EQ(loadedState(6), BQL_CALL_OUTGOING);
    EXPECT_EQ(loadedState(7), BQL_CALL_INCOMING);
    EXPECT_EQ(loadedState(9), BQL_CALL_CONNECTED);
    EXPECT_EQ(loadedState(10), BQL_CALL_CONNECTED);
}

TEST(Call, StatesOutsideTheClientNumberingReadAsIdle) {
    EXPECT_EQ(loadedState(11), BQL_CALL_IDLE);
    EXPECT_EQ(loadedState(-3), BQL_CALL_IDLE);
}

TEST(Call, LoadedCallTakesIdConferenceAndContact) {
    auto record = makeCallRecord(44, 9, "555", "Eve", 1);
    BQLColloqCall call(&record);
    EXPECT_EQ(call.getID(), 44);
    EXPECT_EQ(call.getConferenceID(), 0);
    EXPECT_TRUE(call.getInConference());
    ASSERT_NE(call.getContact(), nullptr);
    EXPECT_STREQ(call.getContact()->getName(), L"Eve");
    EXPECT_STREQ(call.getContact()->getPhone(), L"555");
    EXPECT_EQ(call.getContact()->getID(), 44);
}

TEST(Call, ReportedCallKeepsTheGivenStateUnmapped) {
    auto record = makeCallRecord(8, 3, "1", "A");
    BQLColloqContact contact(&record);
    BQLColloqCall call(&record, BQL_CALL_CONNECTED, contact);
    EXPECT_EQ(call.getState(), BQL_CALL_CONNECTED);
    EXPECT_FALSE(call.getInConference());
}

TEST(Call, KeepsItsOwnContactWhenThePassedOneIsReleased) {
    auto record = makeCallRecord(8, 7, "12", "Ann");
    auto* temporary = new BQLColloqContact(&record);
    BQLColloqCall call(&record, BQL_CALL_INCOMING, *temporary);
    temporary->Release();
    EXPECT_STREQ(call.getContact()->getName(), L"Ann");
    EXPECT_STREQ(call.getContact()->getPhone(), L"12");
}

TEST(Call, GetContactSharesOwnership) {
    auto record = makeCallRecord(8, 7, "12", "Ann");
    std::shared_ptr<BQLColloqContact> contact;
    {
        BQLColloqCall call(&record);
        contact = call.getContact();
        EXPECT_EQ(contact.use_count(), 2);
    }
    EXPECT_EQ(contact.use_count(), 1);
    EXPECT_STREQ(contact->getName(), L"Ann");
}

TEST(Call, SettersAndStateChanges) {
    auto record = makeCallRecord(8, 7, "", "");
    BQLColloqCall call(&record);
    call.setID(9);
    call.setConferenceID(3);
    call.setInConference(true);
    call.setState(BQL_CALL_TERMINATE_PENDING);
    EXPECT_EQ(call.getID(), 9);
    EXPECT_EQ(call.getConferenceID(), 3);
    EXPECT_TRUE(call.getInConference());
    EXPECT_EQ(call.getState(), BQL_CALL_TERMINATE_PENDING);
}

}  // namespace
