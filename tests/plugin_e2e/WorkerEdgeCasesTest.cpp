#include <algorithm>

#include "PluginEndToEnd.h"

namespace e2e {
namespace {

const std::string kHandlerEntry = "processVexilEvent(EventPtr comeEvent): CallID = %d";

class WorkerEdgeCases : public StartedWithOneHeadset {
protected:
    std::size_t pluginLineCount(const std::string& message, uint64_t after) {
        const std::string text = pluginLine(message);
        const auto lines = clientCallsOf(HostCall::Log, after);
        return static_cast<std::size_t>(std::count_if(
            lines.begin(), lines.end(), [&text](const RecordedCall& line) { return line.text == text; }));
    }

    void muteFromTheClient() {
        fireAudio(CallbackSlot::OnAudioMute);
        expectRuntimeCommands(VEXILCTL_CMD_SET_MUTE, 1);
    }
};

TEST_F(WorkerEdgeCases, ConnectedReportOfARingingCallLogsInOrderAndAnswersItOnce) {
    fireCall(CallbackSlot::OnIncoming, 81, clientstate::kRinging, "5550081", "Rae");
    expectRuntimeCommands(VEXILCTL_CMD_INCOMING_CALL, 1);
    const uint64_t mark = clientMark();
    const std::size_t commands = runtimeMark();

    fireCall(CallbackSlot::OnConnected, 81, clientstate::kConnected, "5550081", "Rae");
    drainWorker();
    expectPluginLinesInOrder(ACCESSORY_LOG_TRACE,
                             {"into pluginThread() case: CONNECTED_CALL_EVENT",
                              "Connected Call Info: CallID = %d, CallState = %d",
                              "into pluginThread() render answered call"},
                             mark);
    const auto answered = runtimeCommandsSince(commands);
    ASSERT_EQ(answered.size(), 1u);
    EXPECT_EQ(answered[0].command, VEXILCTL_CMD_ANSWERED_CALL);
    EXPECT_EQ(answered[0].callId, 81);
    EXPECT_EQ(headsetCallState(81), VEXILCTL_CALL_ACTIVE);

    // The call is now connected: a further report shows it as in progress, not answered again.
    const uint64_t again = clientMark();
    fireCall(CallbackSlot::OnConnected, 81, clientstate::kConnected, "5550081", "Rae");
    expectRuntimeCommands(VEXILCTL_CMD_ANSWERED_CALL, 1);
    expectRuntimeCommands(VEXILCTL_CMD_INSERT_CALL, 1);
    expectPluginLine(ACCESSORY_LOG_TRACE, "into pluginThread() render connected call", again);
}

TEST_F(WorkerEdgeCases, EndOfAnUnknownCallKeepsTheMuteState) {
    connectIncomingCall(82, "5550082", "Sam");
    muteFromTheClient();
    fireCall(CallbackSlot::OnOnHook, 83, clientstate::kConnected);
    drainWorker();

    // Still muted: ending the call from the headset unmutes the client first.
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_TERMINATE_CALL, 82);
    const RecordedCall ended = expectClientCall(HostCall::EndCall, headset.path, mark);
    const auto unmuted = clientCallsOf(HostCall::UnmuteCall, mark);
    ASSERT_EQ(unmuted.size(), 1u);
    EXPECT_LT(unmuted[0].sequence, ended.sequence);
}

TEST_F(WorkerEdgeCases, EndOfAKnownCallClearsTheMuteState) {
    connectIncomingCall(84, "5550084", "Tam");
    fireCall(CallbackSlot::OnCallWaiting, 85, clientstate::kRinging, "5550085", "Ula");
    muteFromTheClient();
    fireCall(CallbackSlot::OnOnHook, 84, clientstate::kConnected);
    expectRuntimeCommands(VEXILCTL_CMD_TERMINATE_CALL, 1);

    // No longer muted: ending the other call from the headset does not unmute the client.
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_TERMINATE_CALL, 85);
    expectClientCall(HostCall::EndCall, headset.path, mark);
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::UnmuteCall, mark).empty());
}

TEST_F(WorkerEdgeCases, HeadsetReportForAnUntrackedCallZeroIsDropped) {
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_ACCEPT_CALL, 0);
    drainWorker();

    EXPECT_TRUE(clientCallsOf(HostCall::AnswerCall, mark).empty());
    EXPECT_GE(pluginLineCount("into pluginThread() case: VEXIL_CALL_EVENT", mark), 2u);
    EXPECT_FALSE(hasPluginLine("into pluginThread() case: VEXIL_CALL_EVENT call is found, Start processing", mark));
    // Only the draining report reached the handler.
    EXPECT_EQ(pluginLineCount(kHandlerEntry, mark), 1u);
}

TEST_F(WorkerEdgeCases, HeadsetReportWithoutACallReachesTheHandler) {
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_ACCEPT_CALL, -1);
    expectClientCall(HostCall::AnswerCall, headset.path, mark);
    expectPluginLinesInOrder(
        ACCESSORY_LOG_TRACE,
        {"into pluginThread() case: VEXIL_CALL_EVENT",
         "into pluginThread() case: VEXIL_CALL_EVENT, Start processing which is not related to a call", kHandlerEntry,
         "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_ACCEPT_CALL"},
        mark);
}

}  // namespace
}  // namespace e2e
