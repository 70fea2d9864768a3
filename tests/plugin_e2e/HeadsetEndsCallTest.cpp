#include "PluginEndToEnd.h"

namespace e2e {
namespace {

const std::string kTerminateCase = "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_TERMINATE_CALL";
// Written after every end request, whatever the client answered; the blanks are part of it.
const std::string kEndCallFails = "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_TERMINATE_CALL." +
                                  std::string(58, ' ') + "endCall fails. Mark the call for termination on connected.";

class HeadsetEndsCall : public StartedWithOneHeadset {
protected:
    // A call marked for termination neither holds nor shows again on a connected report.
    void expectMarkedForTermination(int32_t callId) {
        const std::size_t commands = runtimeMark();
        const uint64_t mark = clientMark();
        fireCall(CallbackSlot::OnHold, callId, clientstate::kHeld);
        fireCall(CallbackSlot::OnConnected, callId, clientstate::kConnected);
        drainWorker();
        EXPECT_TRUE(runtimeCommandsSince(commands).empty());
        EXPECT_FALSE(hasPluginLine("Held Call Info: CallID = %d, CallState = %d", mark));
        expectPluginLine(ACCESSORY_LOG_TRACE, "Connected Call Info: CallID = %d, CallState = %d", mark);
    }
};

TEST_F(HeadsetEndsCall, RejectButtonRejectsTheRingingCallInTheClient) {
    fireCall(CallbackSlot::OnIncoming, 17, clientstate::kRinging, "5551234", "Ann");
    expectRuntimeCommands(VEXILCTL_CMD_INCOMING_CALL, 1);

    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_REJECT_CALL, 17);
    expectClientCall(HostCall::RejectCall, headset.path, mark);
    expectPluginLinesInOrder(ACCESSORY_LOG_TRACE,
                             {"processVexilEvent(EventPtr comeEvent): CallID = %d",
                              "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_REJECT_CALL"},
                             mark);
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::EndCall, mark).empty());
    EXPECT_TRUE(runtimeCommandsOf(VEXILCTL_CMD_TERMINATE_CALL).empty());
    expectLocalLog("DEBUG", "OnCallStateChanged",
                   "BQLColloqVexil::OnCallStateChanged 23event is fired for device " + headset.path);
}

class HeadsetEndButton : public HeadsetEndsCall, public ::testing::WithParamInterface<int32_t> {};

TEST_P(HeadsetEndButton, EndsTheCallInTheClientAndMarksItForTermination) {
    connectIncomingCall(23, "5550023", "Gil");

    const uint64_t mark = clientMark();
    press(headset, GetParam(), 23);
    expectClientCall(HostCall::EndCall, headset.path, mark);
    expectPluginLinesInOrder(ACCESSORY_LOG_TRACE, {kTerminateCase, kEndCallFails}, mark);
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::UnmuteCall, mark).empty());
    EXPECT_EQ(clientCallsOf(HostCall::EndCall, mark).size(), 1u);
    expectMarkedForTermination(23);
}

INSTANTIATE_TEST_SUITE_P(Codes, HeadsetEndButton, ::testing::Values(CALL_STATE_TERMINATE_CALL, 8),
                         [](const ::testing::TestParamInfo<int32_t>& code) {
                             return "Code" + std::to_string(code.param);
                         });

TEST_F(HeadsetEndsCall, EndButtonWhileMutedUnmutesTheClientFirst) {
    connectIncomingCall(24, "5550024", "Hal");
    fireAudio(CallbackSlot::OnAudioMute);
    expectRuntimeCommands(VEXILCTL_CMD_SET_MUTE, 1);

    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_TERMINATE_CALL, 24);
    const RecordedCall ended = expectClientCall(HostCall::EndCall, headset.path, mark);
    const auto unmuted = clientCallsOf(HostCall::UnmuteCall, mark);
    ASSERT_EQ(unmuted.size(), 1u);
    EXPECT_EQ(unmuted[0].device, headset.path);
    EXPECT_LT(unmuted[0].sequence, ended.sequence);
    expectPluginLine(ACCESSORY_LOG_TRACE, kEndCallFails, mark);
}

}  // namespace
}  // namespace e2e
