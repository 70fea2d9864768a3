#include "PluginEndToEnd.h"

namespace e2e {
namespace {

class HoldResume : public StartedWithOneHeadset {
protected:
    void SetUp() override {
        StartedWithOneHeadset::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        connectIncomingCall(33, "5550033", "Ida");
    }
};

TEST_F(HoldResume, ClientHoldHoldsTheCallOnTheHeadsetOnce) {
    const uint64_t mark = clientMark();
    fireCall(CallbackSlot::OnHold, 33, clientstate::kHeld);
    const auto held = expectRuntimeCommands(VEXILCTL_CMD_HOLD_CALL, 1);
    ASSERT_EQ(held.size(), 1u);
    EXPECT_EQ(held[0].callId, 33);
    EXPECT_EQ(headsetCallState(33), VEXILCTL_CALL_HELD);
    expectPluginLinesInOrder(
        ACCESSORY_LOG_TRACE,
        {"into pluginThread() case: ON_HOLD_CALL_EVENT", "Held Call Info: CallID = %d, CallState = %d"}, mark);

    // A held call is not held again.
    fireCall(CallbackSlot::OnHold, 33, clientstate::kHeld);
    expectRuntimeCommands(VEXILCTL_CMD_HOLD_CALL, 1);
}

TEST_F(HoldResume, ClientConnectedReportOfAHeldCallResumesItOnTheHeadset) {
    fireCall(CallbackSlot::OnHold, 33, clientstate::kHeld);
    expectRuntimeCommands(VEXILCTL_CMD_HOLD_CALL, 1);

    const uint64_t mark = clientMark();
    fireCall(CallbackSlot::OnConnected, 33, clientstate::kConnected);
    const auto resumed = expectRuntimeCommands(VEXILCTL_CMD_RESUME_CALL, 1);
    ASSERT_EQ(resumed.size(), 1u);
    EXPECT_EQ(resumed[0].callId, 33);
    EXPECT_EQ(headsetCallState(33), VEXILCTL_CALL_ACTIVE);
    expectPluginLine(ACCESSORY_LOG_TRACE, "into pluginThread() render resume call", mark);
}

TEST_F(HoldResume, HeadsetHoldWithOneCallHoldsItInTheClient) {
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_HOLD_CALL, 33);
    expectClientCall(HostCall::HoldCall, headset.path, mark);
    expectPluginLine(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_HOLD_CALL", mark);
    drainWorker();
    EXPECT_EQ(clientCallsOf(HostCall::HoldCall, mark).size(), 1u);
}

TEST_F(HoldResume, HeadsetResumeResumesTheCallInTheClient) {
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_RESUME_CALL, 33);
    expectClientCall(HostCall::ResumeCall, headset.path, mark);
    expectPluginLine(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_RESUME_CALL", mark);
}

}  // namespace
}  // namespace e2e
