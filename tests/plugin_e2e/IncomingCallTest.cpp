#include "PluginEndToEnd.h"

namespace e2e {
namespace {

constexpr int32_t kClientRinging = 7;
constexpr int32_t kClientConnected = 9;

class IncomingCall : public PluginEndToEnd {};

TEST_F(IncomingCall, RingsAnswersFromTheHeadsetAndShowsTheActiveCall) {
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(headset);

    fireCall(CallbackSlot::OnIncoming, 17, kClientRinging, "5551234", "Ann Smith");
    const auto rings = expectRuntimeCommands(VEXILCTL_CMD_INCOMING_CALL, 1);
    EXPECT_EQ(rings[0].callId, 17);
    EXPECT_STREQ(rings[0].contactName, "Ann Smith");
    EXPECT_STREQ(rings[0].contactPhone, "5551234");
    EXPECT_EQ(headsetCallState(17), VEXILCTL_CALL_RINGING);

    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_ACCEPT_CALL, 17);
    expectClientCall(HostCall::AnswerCall, headset.path, mark);

    fireCall(CallbackSlot::OnConnected, 17, kClientConnected, "5551234", "Ann Smith");
    const auto answered = expectRuntimeCommands(VEXILCTL_CMD_ANSWERED_CALL, 1);
    EXPECT_EQ(answered[0].callId, 17);
    EXPECT_EQ(headsetCallState(17), VEXILCTL_CALL_ACTIVE);
}

TEST_F(IncomingCall, UninitializeEndsTheTrackedCallOnTheHeadset) {
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(headset);
    fireCall(CallbackSlot::OnIncoming, 21, kClientRinging, "777", "Bo");
    expectRuntimeCommands(VEXILCTL_CMD_INCOMING_CALL, 1);

    uninitializePlugin();
    const auto ended = runtimeCommandsOf(VEXILCTL_CMD_TERMINATE_CALL);
    ASSERT_EQ(ended.size(), 1u);
    EXPECT_EQ(ended[0].callId, 21);
}

}  // namespace
}  // namespace e2e
