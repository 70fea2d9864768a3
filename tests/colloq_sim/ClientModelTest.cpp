// The model client's reactions, without a plug-in: what it notices and which callbacks it
// fires for each operation of the plug-in and each action of its user or the far end.
#include <gtest/gtest.h>

#include "ClientCallState.h"
#include "ClientModel.h"

namespace colloqsim {
namespace {

using hostharness::CallbackSlot;
using hostharness::HostCall;
using hostharness::RecordedCall;

constexpr const char* kDevice = "hid/vid_2f0c&pid_0a1b/SN1";

RecordedCall operation(HostCall call, const std::string& number = "", char key = '\0') {
    RecordedCall recorded;
    recorded.call = call;
    recorded.device = kDevice;
    recorded.number = number;
    recorded.key = key;
    return recorded;
}

class ColloqSimClientModelTest : public ::testing::Test {
protected:
    // A ringing call 17 that the client has answered.
    void connectCall17() {
        ASSERT_TRUE(model.incoming(17, "5551234", "Ann Smith", false).ok());
        ASSERT_TRUE(model.userAnswers(17).ok());
    }
    int32_t stateOf(int32_t id) const {
        for (const auto& call : model.calls()) {
            if (call.id == id) {
                return call.state;
            }
        }
        return -1;
    }

    ClientModel model;
};

TEST_F(ColloqSimClientModelTest, IncomingCallRingsAndFiresOnIncomingWithTheCallsDetails) {
    const ClientOutcome outcome = model.incoming(17, "5551234", "Ann Smith", false);
    ASSERT_TRUE(outcome.ok());
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnIncoming);
    EXPECT_EQ(outcome.firings[0].args.call.id, 17);
    EXPECT_EQ(outcome.firings[0].args.call.state, clientstate::kRinging);
    EXPECT_EQ(outcome.firings[0].args.call.number, "5551234");
    EXPECT_EQ(outcome.firings[0].args.call.name, "Ann Smith");
    EXPECT_EQ(outcome.firings[0].args.calls.size(), 1u);
    EXPECT_EQ(stateOf(17), clientstate::kRinging);
}

TEST_F(ColloqSimClientModelTest, WaitingCallFiresOnCallWaiting) {
    connectCall17();
    const ClientOutcome outcome = model.incoming(18, "5550000", "Bob", true);
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnCallWaiting);
    EXPECT_EQ(outcome.firings[0].args.calls.size(), 2u);
}

TEST_F(ColloqSimClientModelTest, ACallIdInUseOrATooLongNumberIsRefusedAndChangesNothing) {
    connectCall17();
    EXPECT_FALSE(model.incoming(17, "1", "", false).ok());
    EXPECT_FALSE(model.incoming(19, std::string(33, '5'), "", false).ok());
    EXPECT_FALSE(model.outgoing(20, "1", std::string(55, 'x')).ok());
    EXPECT_EQ(model.calls().size(), 1u);
    EXPECT_EQ(stateOf(17), clientstate::kConnected);
}

TEST_F(ColloqSimClientModelTest, AnswerCallConnectsTheRingingCallAndFiresOnConnected) {
    ASSERT_TRUE(model.incoming(17, "5551234", "Ann Smith", false).ok());
    const ClientOutcome outcome = model.react(operation(HostCall::AnswerCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnConnected);
    EXPECT_EQ(outcome.firings[0].args.call.state, clientstate::kConnected);
    ASSERT_EQ(outcome.facts.size(), 1u);
    EXPECT_EQ(outcome.facts[0].verb, "answered");
    EXPECT_EQ(outcome.facts[0].argument, "17");
    EXPECT_EQ(stateOf(17), clientstate::kConnected);
}

TEST_F(ColloqSimClientModelTest, AnsweringAWaitingCallPutsTheConnectedOneOnHoldFirst) {
    connectCall17();
    ASSERT_TRUE(model.incoming(18, "5550000", "Bob", true).ok());
    const ClientOutcome outcome = model.react(operation(HostCall::AnswerCall));
    ASSERT_EQ(outcome.firings.size(), 2u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnHold);
    EXPECT_EQ(outcome.firings[0].args.call.id, 17);
    EXPECT_EQ(outcome.firings[1].slot, CallbackSlot::OnConnected);
    EXPECT_EQ(outcome.firings[1].args.call.id, 18);
    EXPECT_EQ(stateOf(17), clientstate::kHeld);
    EXPECT_EQ(stateOf(18), clientstate::kConnected);
}

TEST_F(ColloqSimClientModelTest, AnswerCallWithNothingRingingIsIgnoredAndFiresNothing) {
    connectCall17();
    const ClientOutcome outcome = model.react(operation(HostCall::AnswerCall));
    EXPECT_TRUE(outcome.firings.empty());
    ASSERT_EQ(outcome.facts.size(), 1u);
    EXPECT_EQ(outcome.facts[0].verb, "ignored");
    EXPECT_EQ(outcome.facts[0].argument, "answerCall");
}

TEST_F(ColloqSimClientModelTest, EndCallEndsTheConnectedCallAndFiresOnOnHook) {
    connectCall17();
    const ClientOutcome outcome = model.react(operation(HostCall::EndCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnOnHook);
    EXPECT_EQ(outcome.firings[0].args.call.id, 17);
    EXPECT_TRUE(outcome.firings[0].args.calls.empty());
    EXPECT_TRUE(model.calls().empty());
}

TEST_F(ColloqSimClientModelTest, EndCallPrefersTheConnectedCallOverAHeldOne) {
    connectCall17();
    ASSERT_TRUE(model.incoming(18, "5550000", "Bob", true).ok());
    ASSERT_TRUE(model.userAnswers(18).ok());
    const ClientOutcome outcome = model.react(operation(HostCall::EndCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].args.call.id, 18);
    EXPECT_EQ(stateOf(17), clientstate::kHeld);
}

TEST_F(ColloqSimClientModelTest, RejectCallEndsTheRingingCallAndFiresOnOnHook) {
    ASSERT_TRUE(model.incoming(17, "5551234", "Ann Smith", false).ok());
    const ClientOutcome outcome = model.react(operation(HostCall::RejectCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnOnHook);
    EXPECT_EQ(outcome.facts[0].verb, "rejected");
    EXPECT_TRUE(model.calls().empty());
}

TEST_F(ColloqSimClientModelTest, HoldCallFiresOnHoldAndResumeCallFiresOnConnected) {
    connectCall17();
    ClientOutcome outcome = model.react(operation(HostCall::HoldCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnHold);
    EXPECT_EQ(stateOf(17), clientstate::kHeld);

    outcome = model.react(operation(HostCall::ResumeCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnConnected);
    EXPECT_EQ(outcome.facts.back().verb, "resumed");
    EXPECT_EQ(stateOf(17), clientstate::kConnected);
}

TEST_F(ColloqSimClientModelTest, ResumeCallWithNothingHeldIsIgnored) {
    connectCall17();
    const ClientOutcome outcome = model.react(operation(HostCall::ResumeCall));
    EXPECT_TRUE(outcome.firings.empty());
    EXPECT_EQ(outcome.facts[0].verb, "ignored");
}

TEST_F(ColloqSimClientModelTest, EndRejectAndHoldWithNothingToActOnAreIgnoredAndChangeNothing) {
    ClientOutcome outcome = model.react(operation(HostCall::EndCall));
    EXPECT_TRUE(outcome.firings.empty());
    ASSERT_EQ(outcome.facts.size(), 1u);
    EXPECT_EQ(outcome.facts[0].verb, "ignored");
    EXPECT_EQ(outcome.facts[0].argument, "endCall");

    connectCall17();
    outcome = model.react(operation(HostCall::RejectCall));
    EXPECT_TRUE(outcome.firings.empty());
    EXPECT_EQ(outcome.facts.at(0).argument, "rejectCall");
    EXPECT_EQ(stateOf(17), clientstate::kConnected);

    ASSERT_TRUE(model.userHolds(17).ok());
    outcome = model.react(operation(HostCall::HoldCall));
    EXPECT_TRUE(outcome.firings.empty());
    EXPECT_EQ(outcome.facts.at(0).argument, "holdCall");
    EXPECT_EQ(stateOf(17), clientstate::kHeld);
}

TEST_F(ColloqSimClientModelTest, EndCallEndsARingingCallWhenNothingIsConnected) {
    ASSERT_TRUE(model.incoming(17, "5551234", "Ann Smith", false).ok());
    const ClientOutcome outcome = model.react(operation(HostCall::EndCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnOnHook);
    EXPECT_EQ(outcome.firings[0].args.call.state, clientstate::kDisconnected);
    EXPECT_TRUE(model.calls().empty());
}

TEST_F(ColloqSimClientModelTest, MuteAndUnmuteFireOnAudioMuteAndOnAudioUnmute) {
    connectCall17();
    ClientOutcome outcome = model.react(operation(HostCall::MuteCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnAudioMute);
    EXPECT_TRUE(model.muted());
    outcome = model.react(operation(HostCall::UnmuteCall));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnAudioUnmute);
    EXPECT_FALSE(model.muted());
}

TEST_F(ColloqSimClientModelTest, MakeCallWithANumberPlacesACallAndFiresOnRemoteAlerting) {
    const ClientOutcome outcome = model.react(operation(HostCall::MakeCall, "5550100"));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnRemoteAlerting);
    EXPECT_EQ(outcome.firings[0].args.call.id, ClientModel::kFirstOwnCallId);
    EXPECT_EQ(outcome.firings[0].args.call.number, "5550100");
    EXPECT_EQ(outcome.firings[0].args.call.state, clientstate::kAlerting);
    EXPECT_EQ(outcome.facts[0].verb, "dialled");
    EXPECT_EQ(outcome.facts[0].argument, "5550100");
}

TEST_F(ColloqSimClientModelTest, OwnCallIdsSkipIdsTheScenarioUsed) {
    ASSERT_TRUE(model.outgoing(150, "1", "").ok());
    const ClientOutcome outcome = model.react(operation(HostCall::MakeCall, "2"));
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].args.call.id, 151);
}

TEST_F(ColloqSimClientModelTest, MakeCallWithoutANumberOnlyBringsTheClientToTheFront) {
    const ClientOutcome outcome = model.react(operation(HostCall::MakeCall, ""));
    EXPECT_TRUE(outcome.firings.empty());
    EXPECT_TRUE(model.calls().empty());
    EXPECT_EQ(model.foregroundCount(), 1);
    EXPECT_EQ(outcome.facts[0].verb, "foreground");
}

TEST_F(ColloqSimClientModelTest, SendDtmfIsShownForTheConnectedCallAndFiresNothing) {
    connectCall17();
    const ClientOutcome outcome = model.react(operation(HostCall::SendDtmf, "", '#'));
    EXPECT_TRUE(outcome.firings.empty());
    ASSERT_EQ(outcome.facts.size(), 1u);
    EXPECT_EQ(outcome.facts[0].verb, "dtmf");
    EXPECT_EQ(outcome.facts[0].argument, "#");
    EXPECT_EQ(outcome.facts[0].detail, "to call 17");
}

TEST_F(ColloqSimClientModelTest, ReleaseAndActiveDeviceChangedSwitchTheClientsAudioDevice) {
    ASSERT_TRUE(model.chooseDevice(kDevice).ok());
    ClientOutcome outcome = model.react(operation(HostCall::ReleaseActiveDevice));
    EXPECT_EQ(outcome.facts[0].verb, "released");
    EXPECT_EQ(model.audioDevice(), "");
    RecordedCall changed = operation(HostCall::ActiveDeviceChanged);
    changed.device = "hid/vid_2f0c&pid_0c2d/SN2";
    outcome = model.react(changed);
    EXPECT_TRUE(outcome.firings.empty());
    EXPECT_EQ(outcome.facts[0].verb, "uses");
    EXPECT_EQ(model.audioDevice(), "hid/vid_2f0c&pid_0c2d/SN2");
}

TEST_F(ColloqSimClientModelTest, ChoosingADeviceFiresOnActiveDeviceChangedWithTheClientsName) {
    const ClientOutcome outcome = model.chooseDevice("AppleUSBAudioEngine:Brimquell:Model 5_1");
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnActiveDeviceChanged);
    EXPECT_EQ(outcome.firings[0].args.device, "AppleUSBAudioEngine:Brimquell:Model 5_1");
    EXPECT_EQ(model.audioDevice(), "AppleUSBAudioEngine:Brimquell:Model 5_1");
}

TEST_F(ColloqSimClientModelTest, AnOperationWithANullArgumentIsIgnored) {
    ASSERT_TRUE(model.incoming(17, "5551234", "Ann Smith", false).ok());
    RecordedCall refused = operation(HostCall::AnswerCall);
    refused.nullArgument = true;
    const ClientOutcome outcome = model.react(refused);
    EXPECT_TRUE(outcome.firings.empty());
    EXPECT_EQ(stateOf(17), clientstate::kRinging);
}

TEST_F(ColloqSimClientModelTest, FarEndAnswersBusyAndHangsUp) {
    ASSERT_TRUE(model.outgoing(20, "5550100", "Bo").ok());
    ClientOutcome outcome = model.remoteAnswers(20);
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnConnected);
    outcome = model.remoteHangsUp(20);
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnOnHook);

    ASSERT_TRUE(model.outgoing(21, "5550101", "").ok());
    outcome = model.remoteBusy(21);
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnBusy);
    EXPECT_EQ(outcome.firings[0].args.call.state, clientstate::kBusy);
    EXPECT_TRUE(model.calls().empty());
}

TEST_F(ColloqSimClientModelTest, UserActionsOnAnUnknownCallAreRefused) {
    EXPECT_EQ(model.userAnswers(5).error, "the client has no call 5");
    EXPECT_FALSE(model.userHolds(5).ok());
    EXPECT_FALSE(model.userResumes(5).ok());
    EXPECT_FALSE(model.userHangsUp(5).ok());
    EXPECT_FALSE(model.remoteAnswers(5).ok());
    EXPECT_FALSE(model.remoteHangsUp(5).ok());
    EXPECT_FALSE(model.remoteBusy(5).ok());
}

TEST_F(ColloqSimClientModelTest, UserMuteFiresOnAudioMute) {
    const ClientOutcome outcome = model.userMutes();
    ASSERT_EQ(outcome.firings.size(), 1u);
    EXPECT_EQ(outcome.firings[0].slot, CallbackSlot::OnAudioMute);
    EXPECT_TRUE(model.muted());
    EXPECT_EQ(model.userUnmutes().firings[0].slot, CallbackSlot::OnAudioUnmute);
}

TEST_F(ColloqSimClientModelTest, GetCallsListsEveryCallOldestFirst) {
    connectCall17();
    ASSERT_TRUE(model.incoming(18, "5550000", "Bob", true).ok());
    const auto calls = model.calls();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].id, 17);
    EXPECT_EQ(calls[1].id, 18);
    EXPECT_EQ(calls[1].state, clientstate::kRinging);
}

}  // namespace
}  // namespace colloqsim
