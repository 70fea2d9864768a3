// Records from the hub cause exactly the client operations their fields ask for: one table of
// every headset code, message kind, device action and block size, each followed by a record
// that only leaves a log line, so that everything the first one caused has happened.
#include <string>
#include <vector>

#include "HubModeFixture.h"
#include "RawHubRecords.h"

namespace e2e {
namespace {

constexpr int32_t kCall = 41;
constexpr const char* kFakeDevice = "processVexilEvent(EventPtr comeEvent): Fake device, ignore events!";

struct RecordScope {
    std::string what;
    std::vector<unsigned char> block;
    std::vector<HostCall> operations;  // what the client is asked, in order
};

std::string names(const std::vector<HostCall>& operations) {
    std::string text;
    for (const HostCall call : operations) {
        text += std::string(text.empty() ? "" : ", ") + hostharness::hostCallName(call);
    }
    return "[" + text + "]";
}

class HubRecordScope : public StartedInHubMode {
protected:
    void SetUp() override {
        StartedInHubMode::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        fireCall(CallbackSlot::OnIncoming, kCall, clientstate::kRinging, "5550141", "Ann Kay");
        expectReceivedMatching("incoming call", callRecord(hubcode::kIncoming, kCall));
    }

    std::string port() const { return folder + "/ports/com.bqlhub.colloq"; }

    RawHubRecord callEvent(uint32_t code, const std::string& keys = "") const {
        RawHubRecord record;
        record.callState = code;
        record.callId = kCall;
        record.devicePath = headset.path;
        record.dtmfKeys = keys;
        return record;
    }

    std::vector<unsigned char> event(uint32_t code, const std::string& keys = "") const {
        return encode(callEvent(code, keys));
    }

    std::vector<unsigned char> resized(uint32_t code, std::size_t size) const {
        std::vector<unsigned char> block = event(code);
        block.resize(size, 0);
        return block;
    }

    std::vector<unsigned char> message(uint32_t type, uint32_t deviceAction, const std::string& number = "") const {
        RawHubRecord record = callEvent(6);
        record.messageType = type;
        record.deviceAction = deviceAction;
        record.phoneNumber = number;
        return encode(record);
    }

    // The client's operations (not its log) since `after`, in order.
    std::vector<HostCall> operationsSince(uint64_t after) {
        std::vector<HostCall> operations;
        for (const RecordedCall& entry : client().journal().entries()) {
            if (entry.sequence > after && entry.call != HostCall::Log) {
                operations.push_back(entry.call);
            }
        }
        return operations;
    }

    // Sends the block, then a headset event without a device, and waits until the worker has
    // logged that one: the block's own effects come before it.
    std::vector<HostCall> operationsCausedBy(const std::vector<unsigned char>& block) {
        const uint64_t mark = clientMark();
        EXPECT_EQ(sendBlock(port(), block), 0);
        RawHubRecord closing;
        closing.callState = 13;
        closing.callId = -1;
        EXPECT_EQ(sendBlock(port(), encode(closing)), 0);
        expectPluginLine(ACCESSORY_LOG_MILESTONE, kFakeDevice, mark);
        return operationsSince(mark);
    }

    std::vector<RecordScope> scopeTable() const;

    void expectEachRecordInScope() {
        for (const RecordScope& row : scopeTable()) {
            SCOPED_TRACE(row.what);
            const std::vector<HostCall> asked = operationsCausedBy(row.block);
            EXPECT_EQ(names(asked), names(row.operations));
        }
    }
};

std::vector<RecordScope> HubRecordScope::scopeTable() const {
    using H = HostCall;
    return {
        {"code 0", event(0), {}},
        {"device selected (1), already the client's device", event(1), {H::MakeCall}},
        {"foreground (2)", event(2), {H::MakeCall}},
        {"foreground when idle (3) with a call", event(3), {}},
        {"foreground (4)", event(4), {H::MakeCall}},
        {"foreground when idle (5) with a call", event(5), {}},
        {"accept (6)", event(6), {H::AnswerCall}},
        {"hold (9) of the only call", event(9), {H::HoldCall}},
        {"resume (10)", event(10), {H::ResumeCall}},
        {"mute (11)", event(11), {H::MuteCall}},
        {"unmute (12)", event(12), {H::UnmuteCall}},
        {"DTMF (13) without keys", event(13, "255"), {}},
        {"DTMF (13) of two keys", event(13, "5#"), {H::SendDtmf, H::SendDtmf}},
        {"reject (14)", event(14), {H::RejectCall}},
        {"code 15", event(15), {}},
        {"code 16", event(16), {}},
        {"code 17", event(17), {}},
        {"code 18", event(18), {}},
        {"device change (19) to another name", event(19, "Model 7.2"), {H::ReleaseActiveDevice, H::ActiveDeviceChanged}},
        {"code 20", event(20), {}},
        {"code 21", event(21), {}},
        {"code 32", event(32), {}},
        {"code 1000", event(1000), {}},
        {"code 0xFFFFFFFF", event(0xFFFFFFFFu), {}},
        {"terminate (7)", event(7), {H::EndCall}},
        {"terminate (8)", event(8), {H::EndCall}},
        {"dial request (1) with a number", message(1, 0, "5550199"), {H::MakeCall}},
        {"dial request (1) without a number", message(1, 0), {}},
        {"active device report (2, 0)", message(2, 0), {}},
        {"no active device (2, 1)", message(2, 1), {}},
        {"device get request echoed (2, 2)", message(2, 2), {}},
        {"device set request echoed (2, 3)", message(2, 3), {}},
        {"device action 7", message(2, 7), {}},
        {"message kind 3", message(3, 0), {}},
        {"message kind 0xFFFFFFFF", message(0xFFFFFFFFu, 0), {}},
        {"accept cut to 2195 bytes", resized(6, kHubRecordBytes - 1), {}},
        {"accept grown to 2197 bytes", resized(6, kHubRecordBytes + 1), {}},
        {"accept grown to 4392 bytes", resized(6, 2 * kHubRecordBytes), {}},
        {"empty block", {}, {}},
        {"four bytes", resized(6, 4), {}},
    };
}

TEST_F(HubRecordScope, EachRecordAsksTheClientForExactlyWhatItsFieldsSay) { expectEachRecordInScope(); }

TEST_F(HubRecordScope, ClientFailingEveryOperationIsAskedTheSameAndTheCallStillReachesTheHub) {
    for (const HostCall operation :
         {HostCall::MakeCall, HostCall::AnswerCall, HostCall::EndCall, HostCall::SendDtmf, HostCall::MuteCall,
          HostCall::UnmuteCall, HostCall::HoldCall, HostCall::ResumeCall, HostCall::ActiveDeviceChanged,
          HostCall::ReleaseActiveDevice, HostCall::RejectCall}) {
        ASSERT_EQ(client().responses().setResult(operation, -1), hostharness::HarnessStatus::Ok);
    }
    const uint64_t mark = clientMark();

    expectEachRecordInScope();

    expectPluginLine(ACCESSORY_LOG_TRACE, "CALL_STATE_TERMINATE_CALL: m_gAccessoryProviderAPIs->endCall returns %d",
                     mark);
    // The first call waits for the client to end it; the next one reaches the hub.
    fireCall(CallbackSlot::OnIncoming, kCall + 1, clientstate::kRinging, "5550142", "Bo");
    expectReceivedMatching("incoming call", callRecord(hubcode::kIncoming, kCall + 1));
}

}  // namespace
}  // namespace e2e
