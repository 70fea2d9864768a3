// The client's call-control operations failing: the plug-in asks once per headset action, does
// not retry or stop, and the next action reaches the client again.
#include <ostream>
#include <string>
#include <vector>

#include "PluginEndToEnd.h"

namespace e2e {
namespace {

constexpr int32_t kCall = 41;
constexpr int16_t kClientFailure = -1;
constexpr int32_t kChangeToThisDevice = 28;

struct FailingOperation {
    const char* name;
    HostCall operation;    // the client operation that fails
    int32_t code;          // the headset's report that asks for it
    const char* keys;      // the report's key text, or null
    std::size_t perPress;  // how often one report calls the operation
    const char* caseLine;  // what the worker logs before calling it, or ""
};

std::ostream& operator<<(std::ostream& out, const FailingOperation& failing) { return out << failing.name; }

const FailingOperation kButtons[] = {
    {"AnswerCall", HostCall::AnswerCall, CALL_STATE_ACCEPT_CALL, nullptr, 1,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_ACCEPT_CALL"},
    {"HoldCall", HostCall::HoldCall, CALL_STATE_HOLD_CALL, nullptr, 1,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_HOLD_CALL"},
    {"ResumeCall", HostCall::ResumeCall, CALL_STATE_RESUME_CALL, nullptr, 1,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_RESUME_CALL"},
    {"MuteCall", HostCall::MuteCall, CALL_STATE_MUTEON, nullptr, 1,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_MUTEON"},
    {"UnmuteCall", HostCall::UnmuteCall, CALL_STATE_MUTEOFF, nullptr, 1,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_MUTEOFF"},
    {"RejectCall", HostCall::RejectCall, CALL_STATE_REJECT_CALL, nullptr, 1,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_REJECT_CALL"},
    {"SendDtmf", HostCall::SendDtmf, CALL_STATE_DTMF_KEY, "1#", 2,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_DTMF_KEY: %s"},
    {"EndCall", HostCall::EndCall, CALL_STATE_TERMINATE_CALL, nullptr, 1,
     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_TERMINATE_CALL"},
};

class ClientOperationFault : public StartedWithOneHeadset {
protected:
    void SetUp() override {
        StartedWithOneHeadset::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        connectIncomingCall(kCall, "5550141", "Ann Kay");
    }

    void fail(HostCall operation) {
        ASSERT_EQ(client().responses().setResult(operation, kClientFailure), hostharness::HarnessStatus::Ok);
    }
};

class ClientButtonFault : public ClientOperationFault, public ::testing::WithParamInterface<FailingOperation> {};

TEST_P(ClientButtonFault, FailingOperationIsAskedOncePerReportAndTheNextReportAsksAgain) {
    const FailingOperation& failing = GetParam();
    fail(failing.operation);

    for (int round = 1; round <= 2; ++round) {
        const uint64_t mark = clientMark();
        press(headset, failing.code, kCall, failing.keys);
        expectPluginLine(ACCESSORY_LOG_TRACE, failing.caseLine, mark);
        drainWorker();
        const std::vector<RecordedCall> asked = clientCallsOf(failing.operation, mark);
        ASSERT_EQ(asked.size(), failing.perPress) << "round " << round;
        for (const RecordedCall& call : asked) {
            EXPECT_EQ(call.device, headset.path);
        }
    }
    // The worker still serves the client's own reports.
    const std::size_t mark = runtimeMark();
    fireCall(CallbackSlot::OnIncoming, kCall + 1, clientstate::kRinging, "5550142", "Bo");
    drainWorker();
    const std::vector<VexilCtlCommand> rung = runtimeCommandsSince(mark);
    ASSERT_EQ(rung.size(), 1u);
    EXPECT_EQ(rung[0].command, VEXILCTL_CMD_INCOMING_CALL);
    EXPECT_EQ(rung[0].callId, kCall + 1);
}

INSTANTIATE_TEST_SUITE_P(Buttons, ClientButtonFault, ::testing::ValuesIn(kButtons),
                         [](const ::testing::TestParamInfo<FailingOperation>& failing) { return failing.param.name; });

TEST_F(ClientOperationFault, FailingMakeCallIsAskedOncePerDialAndTheNextDialAsksAgain) {
    fail(HostCall::MakeCall);
    for (const char* number : {"5550191", "5550192"}) {
        const uint64_t mark = clientMark();
        dial(headset, number);
        expectPluginLine(ACCESSORY_LOG_TRACE, "BQL_COLLOQ_MAKE_CALL_EVENT put outbound call", mark);
        drainWorker();
        const std::vector<RecordedCall> asked = clientCallsOf(HostCall::MakeCall, mark);
        ASSERT_EQ(asked.size(), 1u);
        EXPECT_EQ(asked[0].number, number);
    }
}

TEST_F(ClientOperationFault, FailingDeviceSwitchIsLoggedAndTheClientIsStillBroughtForward) {
    const Headset second = plugHeadset(0x0c2d, "SN2", "Model 7.2");
    fail(HostCall::ActiveDeviceChanged);
    fail(HostCall::ReleaseActiveDevice);

    for (int round = 1; round <= 2; ++round) {
        const uint64_t mark = clientMark();
        press(second, kChangeToThisDevice, -1);
        expectPluginLine(ACCESSORY_LOG_TRACE, "activeDeviceChanged returns '%d' for device '%s' ", mark);
        expectPluginLine(ACCESSORY_LOG_TRACE, "setColloqForeground() is finished", mark);
        drainWorker();
        const std::vector<RecordedCall> released = clientCallsOf(HostCall::ReleaseActiveDevice, mark);
        const std::vector<RecordedCall> changed = clientCallsOf(HostCall::ActiveDeviceChanged, mark);
        const std::vector<RecordedCall> forward = clientCallsOf(HostCall::MakeCall, mark);
        ASSERT_EQ(released.size(), 1u) << "round " << round;
        ASSERT_EQ(changed.size(), 1u) << "round " << round;
        ASSERT_EQ(forward.size(), 1u) << "round " << round;
        EXPECT_EQ(changed[0].device, second.path);
        EXPECT_LT(released[0].sequence, changed[0].sequence);
        EXPECT_LT(changed[0].sequence, forward[0].sequence);
        EXPECT_EQ(forward[0].number, "");
    }
}

TEST_F(ClientOperationFault, FailingEndCallStillMarksTheCallAndLaterCallsAreServed) {
    fail(HostCall::EndCall);
    fail(HostCall::UnmuteCall);
    fireAudio(CallbackSlot::OnAudioMute);
    const uint64_t mark = clientMark();

    press(headset, CALL_STATE_TERMINATE_CALL, kCall);
    expectPluginLine(ACCESSORY_LOG_TRACE,
                     "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_TERMINATE_CALL." + std::string(58, ' ') +
                         "endCall fails. Mark the call for termination on connected.",
                     mark);
    drainWorker();

    const std::vector<RecordedCall> unmuted = clientCallsOf(HostCall::UnmuteCall, mark);
    const std::vector<RecordedCall> ended = clientCallsOf(HostCall::EndCall, mark);
    ASSERT_EQ(unmuted.size(), 1u);
    ASSERT_EQ(ended.size(), 1u);
    EXPECT_LT(unmuted[0].sequence, ended[0].sequence) << "ended before unmuting";
    // The client ends the call itself later; the headset is told once.
    fireCall(CallbackSlot::OnOnHook, kCall, clientstate::kConnected);
    expectRuntimeCommands(VEXILCTL_CMD_TERMINATE_CALL, 1);
    connectIncomingCall(kCall + 1, "5550142", "Bo");
}

}  // namespace
}  // namespace e2e
