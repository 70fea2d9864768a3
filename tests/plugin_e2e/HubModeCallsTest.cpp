// The client's calls reach the hub, not the runtime, once the plug-in has found the hub.
#include "HubModeFixture.h"

namespace e2e {
namespace {

class HubModeCalls : public HubModeEndToEnd {
protected:
    void expectCallRecord(const HubRecord& record, int64_t callState, int64_t callId, const std::string& name = "",
                          const std::string& number = "") {
        EXPECT_EQ(record.messageType, hubcode::kCallMessage) << describe(record);
        EXPECT_EQ(record.callState, callState) << describe(record);
        EXPECT_EQ(record.deviceAction, 0) << describe(record);
        EXPECT_EQ(record.callId, callId) << describe(record);
        EXPECT_EQ(record.contactName, name) << describe(record);
        EXPECT_EQ(record.phoneNumber, number) << describe(record);
        EXPECT_EQ(record.devicePath, "") << describe(record);
        EXPECT_EQ(record.extraText, "") << describe(record);
        EXPECT_EQ(record.dtmfKeys, "") << describe(record);
        EXPECT_EQ(record.productId, 0) << describe(record);
    }
};

TEST_F(HubModeCalls, IncomingCallReachesTheHubWithItsIdNameAndNumber) {
    ASSERT_NO_FATAL_FAILURE(startInHubMode());

    fireCall(CallbackSlot::OnIncoming, 31, clientstate::kRinging, "5551234", "Ann Smith");

    expectCallRecord(expectReceived(), hubcode::kIncoming, 31, "Ann Smith", "5551234");
    drainWorker();
    EXPECT_TRUE(runtimeCommandsOf(VEXILCTL_CMD_INCOMING_CALL).empty()) << "the runtime rang too";
    expectLocalLog("DEBUG", "virtual bool BQLColloqVexilProxy::performIncomingCall(pCall, pContact)",
                   "Incoming call sent to Vexil... line:31");
}

TEST_F(HubModeCalls, AnsweredHeldResumedAndEndedCallReachesTheHubByItsId) {
    ASSERT_NO_FATAL_FAILURE(startInHubMode());

    fireCall(CallbackSlot::OnIncoming, 32, clientstate::kRinging, "5550132", "Bo Lind");
    expectCallRecord(expectReceived(), hubcode::kIncoming, 32, "Bo Lind", "5550132");
    fireCall(CallbackSlot::OnConnected, 32, clientstate::kConnected, "5550132", "Bo Lind");
    expectCallRecord(expectReceived(), hubcode::kAnswered, 32);
    fireCall(CallbackSlot::OnHold, 32, clientstate::kHeld);
    expectCallRecord(expectReceived(), hubcode::kHold, 32);
    fireCall(CallbackSlot::OnConnected, 32, clientstate::kConnected);
    expectCallRecord(expectReceived(), hubcode::kResume, 32);
    fireCall(CallbackSlot::OnOnHook, 32, 0);
    expectCallRecord(expectReceived(), hubcode::kTerminate, 32);

    drainWorker();
    EXPECT_TRUE(runtimeCommands().empty()) << "the runtime received call commands";
}

TEST_F(HubModeCalls, OutgoingCallReachesTheHubWithItsIdNameAndNumber) {
    ASSERT_NO_FATAL_FAILURE(startInHubMode());

    fireCall(CallbackSlot::OnRemoteAlerting, 33, clientstate::kAlerting, "+4930123456", "Cy Berg");

    expectCallRecord(expectReceived(), hubcode::kOutgoing, 33, "Cy Berg", "+4930123456");
    // The proxy writes its line once the record is sent.
    drainWorker();
    expectLocalLog("DEBUG", "virtual bool BQLColloqVexilProxy::performOutgoingCall(pCall, pContact)",
                   "Outgoing call sent to Vexil... line:33");
}

TEST_F(HubModeCalls, MuteAndUnmuteReachTheHubWithoutACallId) {
    ASSERT_NO_FATAL_FAILURE(startInHubMode());

    fireAudio(CallbackSlot::OnAudioMute);
    expectCallRecord(expectReceived(), hubcode::kMuteOn, 0);
    fireAudio(CallbackSlot::OnAudioUnmute);
    expectCallRecord(expectReceived(), hubcode::kMuteOff, 0);

    drainWorker();
    EXPECT_TRUE(runtimeCommandsOf(VEXILCTL_CMD_SET_MUTE).empty()) << "the runtime was muted too";
    expectLocalLog("DEBUG", "virtual bool BQLColloqVexilProxy::performMuteCall(bool)", "Mute ON call sent to Vexil...");
    expectLocalLog("DEBUG", "virtual bool BQLColloqVexilProxy::performMuteCall(bool)", "Mute OFF sent to Vexil...");
}

TEST_F(HubModeCalls, CallInProgressWhenTheHeadsetBecomesTheClientsDeviceReachesTheHubAsInserted) {
    hostharness::CallDescription inProgress;
    inProgress.id = 34;
    inProgress.state = clientstate::kConnected;
    inProgress.number = "5550134";
    inProgress.name = "Dee Moss";
    ASSERT_EQ(client().responses().setCalls({inProgress}), hostharness::HarnessStatus::Ok);

    ASSERT_NO_FATAL_FAILURE(startInHubMode());

    // An inserted call names its contact but carries no number.
    expectCallRecord(expectReceivedMatching("inserted call", callRecord(hubcode::kInsert, 34)), hubcode::kInsert, 34,
                     "Dee Moss");
    EXPECT_EQ(clientCallCount(HostCall::GetCalls), 1u);
}

TEST_F(HubModeCalls, UninitializeEndsEveryTrackedCallAtTheHub) {
    ASSERT_NO_FATAL_FAILURE(startInHubMode());
    connectCall(35, "5550135", "Eve Holt");
    fireCall(CallbackSlot::OnIncoming, 36, clientstate::kRinging, "5550136", "Finn Roe");
    expectCallRecord(expectReceived(), hubcode::kIncoming, 36, "Finn Roe", "5550136");

    uninitializePlugin();

    expectCallRecord(expectReceived(), hubcode::kTerminate, 35);
    expectCallRecord(expectReceived(), hubcode::kTerminate, 36);
    EXPECT_TRUE(runtimeCommandsOf(VEXILCTL_CMD_TERMINATE_CALL).empty()) << "the runtime was told to end calls";
}

}  // namespace
}  // namespace e2e
