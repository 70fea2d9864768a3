#include <algorithm>

#include "PluginEndToEnd.h"

namespace e2e {
namespace {

const std::string kIncomingCase = "into pluginThread() case: INCOMING_CALL_EVENT";

class CallbackEdgeCases : public PluginEndToEnd {
protected:
    std::size_t pluginLineCount(const std::string& message, uint64_t after) {
        const std::string text = pluginLine(message);
        const auto lines = clientCallsOf(HostCall::Log, after);
        return static_cast<std::size_t>(std::count_if(
            lines.begin(), lines.end(), [&text](const RecordedCall& line) { return line.text == text; }));
    }

    // Whether the worker wrote any line of its call and audio cases.
    bool hasCallOrAudioCaseLine(uint64_t after) {
        for (const char* kind : {"OUTGOING_CALL_EVENT", "INCOMING_CALL_EVENT", "CONNECTED_CALL_EVENT",
                                 "TERMINATED_CALL_EVENT", "MUTEON_CALL_EVENT", "MUTEOFF_CALL_EVENT",
                                 "ON_HOLD_CALL_EVENT"}) {
            if (hasPluginLine(std::string("into pluginThread() case: ") + kind, after)) {
                return true;
            }
        }
        return false;
    }
};

TEST_F(CallbackEdgeCases, WithoutAHeadsetEveryCallAndAudioCallbackReturnsZeroAndReachesNothing) {
    // The runtime session stays registered once its last headset is gone, so the worker can
    // still be drained; the client's device report then finds no headset left.
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    initializePlugin();
    ASSERT_EQ(vexilctl_remove_headset(headset.path.c_str()), VEXILCTL_OK);
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);
    chooseClientDevice(clientDeviceId(headset));
    const uint64_t mark = clientMark();
    const std::size_t commands = runtimeMark();

    for (const CallbackSlot slot :
         {CallbackSlot::OnOffHook, CallbackSlot::OnReorder, CallbackSlot::OnBusy, CallbackSlot::OnIncoming,
          CallbackSlot::OnCallWaiting, CallbackSlot::OnConnected, CallbackSlot::OnHold, CallbackSlot::OnOnHook,
          CallbackSlot::OnRemoteAlerting}) {
        fireCall(slot, 71, clientstate::kRinging, "5550071", "Ned");
    }
    fireAudio(CallbackSlot::OnAudioMute);
    fireAudio(CallbackSlot::OnAudioUnmute);
    drainWorker();

    EXPECT_TRUE(runtimeCommandsSince(commands).empty());
    EXPECT_FALSE(hasCallOrAudioCaseLine(mark));
}

TEST_F(CallbackEdgeCases, RepeatedIncomingReportForATrackedCallRingsOnlyOnce) {
    startWithHeadset(plugHeadset(0x0a1b, "SN1", "Model 5.1"));
    const uint64_t mark = clientMark();

    fireCall(CallbackSlot::OnIncoming, 72, clientstate::kRinging, "5550072", "Oda");
    fireCall(CallbackSlot::OnIncoming, 72, clientstate::kRinging, "5550072", "Oda");
    const auto rings = expectRuntimeCommands(VEXILCTL_CMD_INCOMING_CALL, 1);
    ASSERT_EQ(rings.size(), 1u);
    EXPECT_EQ(rings[0].callId, 72);
    EXPECT_EQ(pluginLineCount(kIncomingCase, mark), 1u);
}

TEST_F(CallbackEdgeCases, NullCallRecordReturnsZeroAndChangesNothingWhileActive) {
    startWithHeadset(plugHeadset(0x0a1b, "SN1", "Model 5.1"));
    const Accessory_CallControlCallback_v1_0_t* table = client().callbacks().registeredTable();
    ASSERT_NE(table, nullptr);
    const uint64_t mark = clientMark();
    const std::size_t commands = runtimeMark();

    // The harness always builds a record, so the table is called directly here.
    for (const Accessory_CallEvent_t callback : {table->onReorder, table->onBusy, table->onIncoming,
                                                 table->onCallWaiting, table->onConnected, table->onHold,
                                                 table->onOnHook, table->onRemoteAlerting}) {
        ASSERT_NE(callback, nullptr);
        EXPECT_EQ(callback(nullptr, nullptr, 0), 0);
    }
    drainWorker();

    EXPECT_TRUE(runtimeCommandsSince(commands).empty());
    EXPECT_FALSE(hasCallOrAudioCaseLine(mark));
}

TEST_F(CallbackEdgeCases, ConnectedReportForAnUntrackedCallShowsItAsInProgress) {
    startWithHeadset(plugHeadset(0x0a1b, "SN1", "Model 5.1"));
    const uint64_t mark = clientMark();

    fireCall(CallbackSlot::OnConnected, 73, clientstate::kConnected, "5550073", "Pia");
    const auto inserted = expectRuntimeCommands(VEXILCTL_CMD_INSERT_CALL, 1);
    ASSERT_EQ(inserted.size(), 1u);
    EXPECT_EQ(inserted[0].callId, 73);
    EXPECT_STREQ(inserted[0].contactPhone, "5550073");
    EXPECT_EQ(headsetCallState(73), VEXILCTL_CALL_ACTIVE);
    EXPECT_TRUE(runtimeCommandsOf(VEXILCTL_CMD_ANSWERED_CALL).empty());
    expectPluginLinesInOrder(ACCESSORY_LOG_TRACE,
                             {"into pluginThread() case: CONNECTED_CALL_EVENT",
                              "Connected Call Info: CallID = %d, CallState = %d",
                              "into pluginThread() render connected call"},
                             mark);
}

TEST_F(CallbackEdgeCases, HoldBusyAndOnHookForAnUnknownCallOnlyLogTheirCase) {
    startWithHeadset(plugHeadset(0x0a1b, "SN1", "Model 5.1"));
    connectIncomingCall(74, "5550074", "Quin");
    const uint64_t mark = clientMark();
    const std::size_t commands = runtimeMark();

    fireCall(CallbackSlot::OnHold, 75, clientstate::kHeld);
    fireCall(CallbackSlot::OnBusy, 75, clientstate::kConnected);
    fireCall(CallbackSlot::OnOnHook, 75, clientstate::kConnected);
    drainWorker();

    EXPECT_TRUE(runtimeCommandsSince(commands).empty());
    EXPECT_EQ(pluginLineCount("into pluginThread() case: ON_HOLD_CALL_EVENT", mark), 1u);
    EXPECT_EQ(pluginLineCount("into pluginThread() case: TERMINATED_CALL_EVENT", mark), 2u);
    EXPECT_FALSE(hasPluginLine("Held Call Info: CallID = %d, CallState = %d", mark));
    EXPECT_FALSE(hasPluginLine("Terminated Call Info: CallID = %d, CallState = %d." + std::string(30, ' ') +
                                   "Render terminate call.",
                               mark));
    EXPECT_EQ(headsetCallState(74), VEXILCTL_CALL_ACTIVE);
}

}  // namespace
}  // namespace e2e
