#include "ClientModel.h"

#include <algorithm>

#include "ClientCallState.h"
#include "hostharness/CallDescription.h"

namespace colloqsim {

namespace {

using hostharness::CallbackSlot;
using hostharness::CallDescription;
using hostharness::HostCall;

std::string idText(int32_t id) { return std::to_string(id); }

}  // namespace

CallDescription* ClientModel::find(int32_t id) {
    const auto found = std::find_if(calls_.begin(), calls_.end(), [id](const CallDescription& c) { return c.id == id; });
    return found == calls_.end() ? nullptr : &*found;
}

CallDescription* ClientModel::newestIn(int32_t state) {
    const auto found =
        std::find_if(calls_.rbegin(), calls_.rend(), [state](const CallDescription& c) { return c.state == state; });
    return found == calls_.rend() ? nullptr : &*found;
}

ClientOutcome ClientModel::unknownCall(int32_t id) const {
    ClientOutcome outcome;
    outcome.error = "the client has no call " + idText(id);
    return outcome;
}

ClientOutcome ClientModel::ignored(const std::string& operation, const std::string& why) const {
    ClientOutcome outcome;
    outcome.facts.push_back({"ignored", operation, why});
    return outcome;
}

void ClientModel::fire(ClientOutcome& outcome, CallbackSlot slot, const CallDescription& call) const {
    Firing firing;
    firing.slot = slot;
    firing.args.call = call;
    firing.args.calls = calls_;
    outcome.firings.push_back(std::move(firing));
}

void ClientModel::hold(ClientOutcome& outcome, CallDescription& call) {
    call.state = clientstate::kHeld;
    outcome.facts.push_back({"held", idText(call.id), ""});
    fire(outcome, CallbackSlot::OnHold, call);
}

void ClientModel::connect(ClientOutcome& outcome, CallDescription& call, const char* verb) {
    for (CallDescription& other : calls_) {
        if (other.id != call.id && other.state == clientstate::kConnected) {
            hold(outcome, other);
        }
    }
    call.state = clientstate::kConnected;
    outcome.facts.push_back({verb, idText(call.id), ""});
    fire(outcome, CallbackSlot::OnConnected, call);
}

void ClientModel::end(ClientOutcome& outcome, int32_t id, const char* verb) {
    const auto found = std::find_if(calls_.begin(), calls_.end(), [id](const CallDescription& c) { return c.id == id; });
    if (found == calls_.end()) {
        return;
    }
    CallDescription ended = *found;
    ended.state = clientstate::kDisconnected;
    calls_.erase(found);
    outcome.facts.push_back({verb, idText(id), ""});
    fire(outcome, CallbackSlot::OnOnHook, ended);
    if (calls_.empty() && muted_) {
        // A new call starts unmuted.
        muted_ = false;
    }
}

void ClientModel::setMuted(ClientOutcome& outcome, bool muted) {
    muted_ = muted;
    outcome.facts.push_back({muted ? "muted" : "unmuted", "", ""});
    Firing firing;
    firing.slot = muted ? CallbackSlot::OnAudioMute : CallbackSlot::OnAudioUnmute;
    outcome.firings.push_back(std::move(firing));
}

ClientOutcome ClientModel::placeCall(int32_t id, const std::string& number, const std::string& name,
                                     const char* verb) {
    CallDescription call;
    call.id = id;
    call.number = number;
    call.name = name;
    Accessory_CallInfo_v1_0_t record;
    if (hostharness::buildCallInfo(call, &record) != hostharness::HarnessStatus::Ok) {
        ClientOutcome outcome;
        outcome.error = "a number has at most " + std::to_string(hostharness::kMaxNumberLength) +
                        " characters and a name at most " + std::to_string(hostharness::kMaxNameLength);
        return outcome;
    }
    if (find(id) != nullptr) {
        ClientOutcome outcome;
        outcome.error = "the client has a call " + idText(id) + " already";
        return outcome;
    }
    ClientOutcome outcome;
    call.state = clientstate::kAlerting;
    calls_.push_back(call);
    nextOwnCallId_ = std::max(nextOwnCallId_, id + 1);
    if (std::string(verb) == "dialled") {
        outcome.facts.push_back({verb, number, "call " + idText(id)});
    } else {
        outcome.facts.push_back({verb, idText(id), number});
    }
    fire(outcome, CallbackSlot::OnRemoteAlerting, call);
    return outcome;
}

ClientOutcome ClientModel::incoming(int32_t id, const std::string& number, const std::string& name, bool waiting) {
    CallDescription call;
    call.id = id;
    call.state = clientstate::kRinging;
    call.number = number;
    call.name = name;
    Accessory_CallInfo_v1_0_t record;
    if (hostharness::buildCallInfo(call, &record) != hostharness::HarnessStatus::Ok) {
        ClientOutcome outcome;
        outcome.error = "a number has at most " + std::to_string(hostharness::kMaxNumberLength) +
                        " characters and a name at most " + std::to_string(hostharness::kMaxNameLength);
        return outcome;
    }
    if (find(id) != nullptr) {
        ClientOutcome outcome;
        outcome.error = "the client has a call " + idText(id) + " already";
        return outcome;
    }
    ClientOutcome outcome;
    calls_.push_back(call);
    outcome.facts.push_back({"rings", idText(id), number});
    fire(outcome, waiting ? CallbackSlot::OnCallWaiting : CallbackSlot::OnIncoming, call);
    return outcome;
}

ClientOutcome ClientModel::outgoing(int32_t id, const std::string& number, const std::string& name) {
    return placeCall(id, number, name, "calls");
}

ClientOutcome ClientModel::remoteAnswers(int32_t id) {
    CallDescription* call = find(id);
    if (call == nullptr) {
        return unknownCall(id);
    }
    ClientOutcome outcome;
    connect(outcome, *call, "connected");
    return outcome;
}

ClientOutcome ClientModel::remoteHangsUp(int32_t id) {
    if (find(id) == nullptr) {
        return unknownCall(id);
    }
    ClientOutcome outcome;
    end(outcome, id, "ended");
    return outcome;
}

ClientOutcome ClientModel::remoteBusy(int32_t id) {
    CallDescription* call = find(id);
    if (call == nullptr) {
        return unknownCall(id);
    }
    CallDescription busy = *call;
    busy.state = clientstate::kBusy;
    calls_.erase(std::find_if(calls_.begin(), calls_.end(), [id](const CallDescription& c) { return c.id == id; }));
    ClientOutcome outcome;
    outcome.facts.push_back({"busy", idText(id), ""});
    fire(outcome, CallbackSlot::OnBusy, busy);
    return outcome;
}

ClientOutcome ClientModel::userAnswers(int32_t id) {
    CallDescription* call = find(id);
    if (call == nullptr) {
        return unknownCall(id);
    }
    ClientOutcome outcome;
    connect(outcome, *call, "answered");
    return outcome;
}

ClientOutcome ClientModel::userHangsUp(int32_t id) {
    if (find(id) == nullptr) {
        return unknownCall(id);
    }
    ClientOutcome outcome;
    end(outcome, id, "ended");
    return outcome;
}

ClientOutcome ClientModel::userHolds(int32_t id) {
    CallDescription* call = find(id);
    if (call == nullptr) {
        return unknownCall(id);
    }
    ClientOutcome outcome;
    hold(outcome, *call);
    return outcome;
}

ClientOutcome ClientModel::userResumes(int32_t id) {
    CallDescription* call = find(id);
    if (call == nullptr) {
        return unknownCall(id);
    }
    ClientOutcome outcome;
    connect(outcome, *call, "resumed");
    return outcome;
}

ClientOutcome ClientModel::userMutes() {
    ClientOutcome outcome;
    setMuted(outcome, true);
    return outcome;
}

ClientOutcome ClientModel::userUnmutes() {
    ClientOutcome outcome;
    setMuted(outcome, false);
    return outcome;
}

ClientOutcome ClientModel::chooseDevice(const std::string& clientDeviceId) {
    ClientOutcome outcome;
    audioDevice_ = clientDeviceId;
    outcome.facts.push_back({"switched", clientDeviceId, ""});
    Firing firing;
    firing.slot = CallbackSlot::OnActiveDeviceChanged;
    firing.args.device = clientDeviceId;
    outcome.firings.push_back(std::move(firing));
    return outcome;
}

ClientOutcome ClientModel::answerCall() {
    CallDescription* call = newestIn(clientstate::kRinging);
    if (call == nullptr) {
        return ignored("answerCall", "no call is ringing");
    }
    ClientOutcome outcome;
    connect(outcome, *call, "answered");
    return outcome;
}

ClientOutcome ClientModel::endCall() {
    // The call the user hears first, then one still being set up, then one on hold.
    for (const int32_t state : {clientstate::kConnected, clientstate::kAlerting, clientstate::kRinging,
                                clientstate::kHeld}) {
        if (CallDescription* call = newestIn(state)) {
            ClientOutcome outcome;
            end(outcome, call->id, "ended");
            return outcome;
        }
    }
    return ignored("endCall", "the client has no call");
}

ClientOutcome ClientModel::rejectCall() {
    CallDescription* call = newestIn(clientstate::kRinging);
    if (call == nullptr) {
        return ignored("rejectCall", "no call is ringing");
    }
    ClientOutcome outcome;
    end(outcome, call->id, "rejected");
    return outcome;
}

ClientOutcome ClientModel::holdCall() {
    CallDescription* call = newestIn(clientstate::kConnected);
    if (call == nullptr) {
        return ignored("holdCall", "no call is connected");
    }
    ClientOutcome outcome;
    hold(outcome, *call);
    return outcome;
}

ClientOutcome ClientModel::resumeCall() {
    CallDescription* call = newestIn(clientstate::kHeld);
    if (call == nullptr) {
        return ignored("resumeCall", "no call is on hold");
    }
    ClientOutcome outcome;
    connect(outcome, *call, "resumed");
    return outcome;
}

ClientOutcome ClientModel::makeCall(const std::string& number) {
    if (number.empty()) {
        ++foregroundCount_;
        ClientOutcome outcome;
        outcome.facts.push_back({"foreground", "", "the client comes to the front"});
        return outcome;
    }
    ClientOutcome outcome = placeCall(nextOwnCallId_, number, "", "dialled");
    if (!outcome.ok()) {
        return ignored("makeCall", outcome.error);
    }
    return outcome;
}

ClientOutcome ClientModel::sendDtmf(char key) {
    ClientOutcome outcome;
    const CallDescription* call = newestIn(clientstate::kConnected);
    outcome.facts.push_back(
        {"dtmf", std::string(1, key), call ? "to call " + idText(call->id) : "with no connected call"});
    return outcome;
}

ClientOutcome ClientModel::react(const hostharness::RecordedCall& operation) {
    if (operation.nullArgument) {
        return ignored(hostharness::hostCallName(operation.call), "a null argument");
    }
    switch (operation.call) {
    case HostCall::AnswerCall: return answerCall();
    case HostCall::EndCall: return endCall();
    case HostCall::RejectCall: return rejectCall();
    case HostCall::HoldCall: return holdCall();
    case HostCall::ResumeCall: return resumeCall();
    case HostCall::MuteCall: {
        ClientOutcome outcome;
        setMuted(outcome, true);
        return outcome;
    }
    case HostCall::UnmuteCall: {
        ClientOutcome outcome;
        setMuted(outcome, false);
        return outcome;
    }
    case HostCall::MakeCall: return makeCall(operation.number);
    case HostCall::SendDtmf: return sendDtmf(operation.key);
    case HostCall::ReleaseActiveDevice: {
        ClientOutcome outcome;
        outcome.facts.push_back({"released", operation.device, ""});
        if (audioDevice_ == operation.device) {
            audioDevice_.clear();
        }
        return outcome;
    }
    case HostCall::ActiveDeviceChanged: {
        ClientOutcome outcome;
        audioDevice_ = operation.device;
        outcome.facts.push_back({"uses", operation.device, "the plug-in chose the client's audio device"});
        return outcome;
    }
    default: return ClientOutcome{};
    }
}

std::vector<CallDescription> ClientModel::calls() const { return calls_; }

}  // namespace colloqsim
