// The hub's headset events and dial requests drive the client, each on the device the hub names.
#include "HubModeFixture.h"

namespace e2e {
namespace {

constexpr const char* kCasePrefix = "processVexilEvent(EventPtr comeEvent): case: ";
// The client's log gets the plug-in's format texts as written, conversions included.
constexpr const char* kEventOfNoCall =
    "into pluginThread() case: VEXIL_CALL_EVENT, Start processing which is not related to a call";
constexpr const char* kDtmfCase = "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_DTMF_KEY: %s";

// A second headset of the maker as the hub names it.
constexpr const char* kOtherHeadsetPath = "hid/vid_2f0c&pid_0c2d/SN2";

class HubModeEvents : public StartedInHubMode {
protected:
    void ringCall(int32_t id) {
        fireCall(CallbackSlot::OnIncoming, id, clientstate::kRinging, "5550100", "Gil Park");
        expectReceivedMatching("incoming call", callRecord(hubcode::kIncoming, id));
    }

    void expectCaseLine(const std::string& name, uint64_t after) {
        expectPluginLine(ACCESSORY_LOG_TRACE, kCasePrefix + name, after);
    }

    // The client's call-control operations (not its log) made after `after`, in order.
    std::vector<RecordedCall> clientOperationsSince(uint64_t after) {
        std::vector<RecordedCall> operations;
        for (RecordedCall& entry : client().journal().entries()) {
            if (entry.sequence > after && entry.call != HostCall::Log) {
                operations.push_back(std::move(entry));
            }
        }
        return operations;
    }

    // Waits for the line the event leaves first, then until the worker has finished with it.
    void awaitHandled(const std::string& line, uint64_t after) {
        expectPluginLine(ACCESSORY_LOG_TRACE, line, after);
        drainWorker();
    }
};

TEST_F(HubModeEvents, AcceptFromTheHubAnswersOnTheHubsDevice) {
    ringCall(41);
    const uint64_t mark = clientMark();

    hubEvent("accept", 41);

    expectCaseLine("CALL_STATE_ACCEPT_CALL", mark);
    expectClientCall(HostCall::AnswerCall, headset.path, mark);
}

TEST_F(HubModeEvents, DevicePathOutsideTheBasicPlaneReachesTheClientAsUtf8) {
    ringCall(41);
    const std::string path = "hid/vid_2f0c&pid_0a1b/\xf0\x9f\x8e\xa7SN1";
    const uint64_t mark = clientMark();

    hubSays("accept call=41 device=" + quoted(path));

    expectClientCall(HostCall::AnswerCall, path, mark);
}

TEST_F(HubModeEvents, TerminateFromTheHubEndsTheCallAndLogsIt) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("terminate", 41);

    expectCaseLine("CALL_STATE_TERMINATE_CALL", mark);
    expectClientCall(HostCall::EndCall, headset.path, mark);
    expectPluginLine(ACCESSORY_LOG_TRACE, "CALL_STATE_TERMINATE_CALL: m_gAccessoryProviderAPIs->endCall returns %d",
                     mark);
    EXPECT_TRUE(clientCallsOf(HostCall::UnmuteCall, mark).empty()) << "unmuted a call that was not muted";
}

TEST_F(HubModeEvents, AlternativeTerminateFromTheHubEndsTheCallToo) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("terminate-alt", 41);

    expectClientCall(HostCall::EndCall, headset.path, mark);
    expectPluginLine(ACCESSORY_LOG_TRACE, "CALL_STATE_TERMINATE_CALL: m_gAccessoryProviderAPIs->endCall returns %d",
                     mark);
}

TEST_F(HubModeEvents, TerminateFromTheHubWhileMutedUnmutesFirstAndClearsTheMuteFlag) {
    connectCall(41, "5550141", "Ann Kay");
    fireAudio(CallbackSlot::OnAudioMute);
    expectReceivedMatching("mute", callRecord(hubcode::kMuteOn, 0));
    const uint64_t mark = clientMark();

    hubEvent("terminate", 41);

    const RecordedCall unmute = expectClientCall(HostCall::UnmuteCall, headset.path, mark);
    const RecordedCall end = expectClientCall(HostCall::EndCall, headset.path, mark);
    EXPECT_LT(unmute.sequence, end.sequence) << "ended before unmuting";
    // A replay to the hub re-sends the mute state, which is now off.
    hubSays("active " + quoted(headset.path));
    EXPECT_EQ(expectReceived().callState, hubcode::kInsert);
    const HubRecord muteState = expectReceived();
    EXPECT_EQ(muteState.callState, hubcode::kMuteOff) << describe(muteState);
}

TEST_F(HubModeEvents, HoldFromTheHubHoldsTheOnlyCall) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("hold", 41);

    expectCaseLine("CALL_STATE_HOLD_CALL", mark);
    expectClientCall(HostCall::HoldCall, headset.path, mark);
}

TEST_F(HubModeEvents, HoldFromTheHubWithTwoCallsHoldsNothing) {
    connectCall(41, "5550141", "Ann Kay");
    fireCall(CallbackSlot::OnCallWaiting, 42, clientstate::kRinging, "5550142", "Ben Ode");
    expectReceivedMatching("waiting call", callRecord(hubcode::kIncoming, 42));
    const uint64_t mark = clientMark();

    hubEvent("hold", 41);

    awaitHandled(std::string(kCasePrefix) + "CALL_STATE_HOLD_CALL", mark);
    EXPECT_TRUE(clientCallsOf(HostCall::HoldCall, mark).empty()) << "held one of two calls";
}

TEST_F(HubModeEvents, ResumeFromTheHubResumesTheCall) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("resume", 41);

    expectCaseLine("CALL_STATE_RESUME_CALL", mark);
    expectClientCall(HostCall::ResumeCall, headset.path, mark);
}

TEST_F(HubModeEvents, MuteAndUnmuteFromTheHubMuteAndUnmuteTheClient) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("mute", 41);
    hubEvent("unmute", 41);

    expectCaseLine("CALL_STATE_MUTEON", mark);
    const RecordedCall mute = expectClientCall(HostCall::MuteCall, headset.path, mark);
    expectCaseLine("CALL_STATE_MUTEOFF", mark);
    const RecordedCall unmute = expectClientCall(HostCall::UnmuteCall, headset.path, mark);
    EXPECT_LT(mute.sequence, unmute.sequence);
}

TEST_F(HubModeEvents, DtmfKeysFromTheHubAreSentOneByOneInOrder) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("dtmf", 41, "keys=12#");

    awaitHandled(kDtmfCase, mark);
    const std::vector<RecordedCall> keys = clientCallsOf(HostCall::SendDtmf, mark);
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0].key, '1');
    EXPECT_EQ(keys[1].key, '2');
    EXPECT_EQ(keys[2].key, '#');
    for (const RecordedCall& key : keys) {
        EXPECT_EQ(key.device, headset.path);
    }
}

TEST_F(HubModeEvents, DtmfReportWithoutKeysSendsNothing) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("dtmf", 41, "keys=255");

    awaitHandled(kDtmfCase, mark);
    EXPECT_TRUE(clientCallsOf(HostCall::SendDtmf, mark).empty());
}

TEST_F(HubModeEvents, RejectFromTheHubRejectsTheCall) {
    ringCall(41);
    const uint64_t mark = clientMark();

    hubEvent("reject", 41);

    expectCaseLine("CALL_STATE_REJECT_CALL", mark);
    expectClientCall(HostCall::RejectCall, headset.path, mark);
}

TEST_F(HubModeEvents, DeviceChangeFromTheHubSwitchesTheClientToTheNamedDevice) {
    const std::string clientId = "AppleUSBAudioEngine:Brimquell:Model 5_1_X.2";
    const uint64_t mark = clientMark();

    hubEvent("device-change", -1, "keys=" + quoted("Model 5.1-X.2"));

    const RecordedCall release = expectClientCall(HostCall::ReleaseActiveDevice, headset.path, mark);
    const RecordedCall change = expectClientCall(HostCall::ActiveDeviceChanged, clientId, mark);
    EXPECT_LT(release.sequence, change.sequence);
    expectPluginLine(ACCESSORY_LOG_TRACE, "activeDeviceChanged returns '%d' for device '%s' ", mark);
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::MakeCall, mark).empty()) << "a device change brought the client forward";
}

TEST_F(HubModeEvents, DeviceChangeFromTheHubReplaysTheCallsInProgress) {
    connectCall(41, "5550141", "Ann Kay");
    const uint64_t mark = clientMark();

    hubEvent("device-change", -1, "keys=" + quoted("Model 7.2"));

    expectClientCall(HostCall::ActiveDeviceChanged, "AppleUSBAudioEngine:Brimquell:Model 7_2", mark);
    const HubRecord inserted = expectReceived();
    EXPECT_EQ(inserted.callState, hubcode::kInsert) << describe(inserted);
    EXPECT_EQ(inserted.callId, 41);
    EXPECT_EQ(inserted.contactName, "Ann Kay");
    EXPECT_EQ(expectReceived().callState, hubcode::kMuteOff);
}

TEST_F(HubModeEvents, DeviceChangeNameOutsideTheBasicPlaneReachesTheClientUnchanged) {
    const uint64_t mark = clientMark();

    hubEvent("device-change", -1, "keys=" + quoted("Studio \xf0\x9f\x8e\xa7 2.0-B"));

    expectClientCall(HostCall::ActiveDeviceChanged, "AppleUSBAudioEngine:Brimquell:Studio \xf0\x9f\x8e\xa7 2_0_B",
                     mark);
}

TEST_F(HubModeEvents, DeviceChangeFromTheHubWithoutANameStillTellsTheClient) {
    const uint64_t mark = clientMark();

    hubEvent("device-change", -1, "keys=\"\"");

    expectClientCall(HostCall::ReleaseActiveDevice, headset.path, mark);
    expectClientCall(HostCall::ActiveDeviceChanged, "", mark);
}

TEST_F(HubModeEvents, DeviceSelectedOnTheHubBecomesTheClientsDeviceAndBringsTheClientForward) {
    const uint64_t mark = clientMark();

    hubSays(std::string("device-selected call=-1 device=") + quoted(kOtherHeadsetPath));

    const RecordedCall release = expectClientCall(HostCall::ReleaseActiveDevice, headset.path, mark);
    const RecordedCall change = expectClientCall(HostCall::ActiveDeviceChanged, kOtherHeadsetPath, mark);
    const RecordedCall forward = expectClientCall(HostCall::MakeCall, headset.path, mark);
    EXPECT_EQ(forward.number, "");
    EXPECT_LT(release.sequence, change.sequence);
    EXPECT_LT(change.sequence, forward.sequence);
}

TEST_F(HubModeEvents, DeviceSelectedOnTheHubThatIsTheClientsDeviceOnlyBringsTheClientForward) {
    const uint64_t mark = clientMark();

    hubEvent("device-selected", -1);

    expectClientCall(HostCall::MakeCall, headset.path, mark);
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::ActiveDeviceChanged, mark).empty());
    EXPECT_TRUE(clientCallsOf(HostCall::ReleaseActiveDevice, mark).empty());
}

TEST_F(HubModeEvents, ForegroundRequestsFromTheHubBringTheClientForward) {
    for (const std::string action : {"foreground", "foreground-alt"}) {
        const uint64_t mark = clientMark();

        hubEvent(action, -1);

        const RecordedCall forward = expectClientCall(HostCall::MakeCall, headset.path, mark);
        EXPECT_EQ(forward.number, "") << action;
        expectPluginLinesInOrder(ACCESSORY_LOG_TRACE,
                                 {"setColloqForeground() is started", "setColloqForeground() is finished"}, mark);
    }
}

TEST_F(HubModeEvents, ForegroundWhenIdleRequestsFromTheHubBringTheClientForwardOnlyWithoutCalls) {
    for (const std::string action : {"foreground-when-idle", "foreground-when-idle-alt"}) {
        const uint64_t mark = clientMark();
        hubEvent(action, -1);
        EXPECT_EQ(expectClientCall(HostCall::MakeCall, headset.path, mark).number, "") << action;
    }

    connectCall(41, "5550141", "Ann Kay");
    for (const std::string action : {"foreground-when-idle", "foreground-when-idle-alt"}) {
        const uint64_t mark = clientMark();
        hubEvent(action, -1);
        awaitHandled(kEventOfNoCall, mark);
        EXPECT_TRUE(clientCallsOf(HostCall::MakeCall, mark).empty()) << action << " with a call in progress";
    }
}

TEST_F(HubModeEvents, DialRequestFromTheHubPlacesTheCallOnTheClientsDevice) {
    const uint64_t mark = clientMark();

    hubSays("dial 5550100");

    const RecordedCall dialled = expectClientCall(HostCall::MakeCall, headset.path, mark);
    EXPECT_EQ(dialled.number, "5550100");
    expectPluginLine(ACCESSORY_LOG_TRACE, "BQL_COLLOQ_MAKE_CALL_EVENT put outbound call", mark);
}

TEST_F(HubModeEvents, DialRequestNumberIsNarrowedToTheLowByteOfEachCharacter) {
    const uint64_t mark = clientMark();

    // U+1D11E keeps its low byte 0x1E.
    hubSays("dial " + quoted("+1 555 \xf0\x9d\x84\x9e"));

    EXPECT_EQ(expectClientCall(HostCall::MakeCall, headset.path, mark).number, "+1 555 \x1e");
}

TEST_F(HubModeEvents, HubEventWithoutADevicePathIsIgnoredAsAFakeDevice) {
    ringCall(41);
    const uint64_t mark = clientMark();

    hubSays("accept call=41 device=\"\"");

    expectPluginLine(ACCESSORY_LOG_MILESTONE, "processVexilEvent(EventPtr comeEvent): Fake device, ignore events!",
                     mark);
    drainWorker();
    EXPECT_TRUE(clientOperationsSince(mark).empty()) << "the client was driven by an event without a device";
}

}  // namespace
}  // namespace e2e
