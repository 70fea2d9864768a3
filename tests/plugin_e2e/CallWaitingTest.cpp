#include "PluginEndToEnd.h"

namespace e2e {
namespace {

class CallWaiting : public StartedWithOneHeadset {
protected:
    void SetUp() override {
        StartedWithOneHeadset::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        connectIncomingCall(41, "5550041", "Lou");
    }

    std::vector<VexilCtlCommand> incomingCommandsFor(int32_t callId) {
        std::vector<VexilCtlCommand> matching;
        for (const VexilCtlCommand& command : runtimeCommandsOf(VEXILCTL_CMD_INCOMING_CALL)) {
            if (command.callId == callId) {
                matching.push_back(command);
            }
        }
        return matching;
    }
};

TEST_F(CallWaiting, EveryWaitingReportRingsTheSecondCallAgain) {
    fireCall(CallbackSlot::OnCallWaiting, 42, clientstate::kRinging, "5550042", "Max");
    fireCall(CallbackSlot::OnCallWaiting, 42, clientstate::kRinging, "5550042", "Max");
    drainWorker();

    const auto rings = incomingCommandsFor(42);
    ASSERT_EQ(rings.size(), 2u);
    for (const VexilCtlCommand& ring : rings) {
        EXPECT_STREQ(ring.contactName, "Max");
        EXPECT_STREQ(ring.contactPhone, "5550042");
    }
    EXPECT_EQ(headsetCallState(41), VEXILCTL_CALL_ACTIVE);
    EXPECT_EQ(headsetCallState(42), VEXILCTL_CALL_RINGING);
}

TEST_F(CallWaiting, HeadsetHoldWithTwoCallsOnlyLogsTheCase) {
    fireCall(CallbackSlot::OnCallWaiting, 42, clientstate::kRinging, "5550042", "Max");
    drainWorker();

    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_HOLD_CALL, 41);
    expectPluginLine(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_HOLD_CALL", mark);
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::HoldCall, mark).empty());
}

}  // namespace
}  // namespace e2e
