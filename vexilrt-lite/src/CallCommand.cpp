#include "CallCommand.h"

#include <cstring>

#include "CommandObserver.h"
#include "Guarded.h"
#include "Runtime.h"
#include "WideText.h"

namespace vexil {

namespace {

VexilCtlCommand makeEntry(int32_t command) {
    VexilCtlCommand entry;
    std::memset(&entry, 0, sizeof entry);
    entry.command = command;
    return entry;
}

}  // namespace

void CallCommand::Release() {
    if (references_.drop()) {
        delete this;
    }
}

int32_t CallCommand::incomingCall(ICall* call, IContact* contact, int32_t a, int32_t b) {
    VexilCtlCommand entry = makeEntry(VEXILCTL_CMD_INCOMING_CALL);
    entry.arg1 = a;
    entry.arg2 = b;
    return execute("ICallCommand::incomingCall", entry, call, contact);
}

int32_t CallCommand::outgoingCall(ICall* call, IContact* contact, int32_t a) {
    VexilCtlCommand entry = makeEntry(VEXILCTL_CMD_OUTGOING_CALL);
    entry.arg1 = a;
    return execute("ICallCommand::outgoingCall", entry, call, contact);
}

int32_t CallCommand::terminateCall(ICall* call) {
    return execute("ICallCommand::terminateCall", makeEntry(VEXILCTL_CMD_TERMINATE_CALL), call, nullptr);
}

int32_t CallCommand::answeredCall(ICall* call) {
    return execute("ICallCommand::answeredCall", makeEntry(VEXILCTL_CMD_ANSWERED_CALL), call, nullptr);
}

int32_t CallCommand::holdCall(ICall* call) {
    return execute("ICallCommand::holdCall", makeEntry(VEXILCTL_CMD_HOLD_CALL), call, nullptr);
}

int32_t CallCommand::resumeCall(ICall* call) {
    return execute("ICallCommand::resumeCall", makeEntry(VEXILCTL_CMD_RESUME_CALL), call, nullptr);
}

int32_t CallCommand::insertCall(ICall* call, IContact* contact) {
    return execute("ICallCommand::insertCall", makeEntry(VEXILCTL_CMD_INSERT_CALL), call, contact);
}

int32_t CallCommand::setMute(bool mute) {
    VexilCtlCommand entry = makeEntry(VEXILCTL_CMD_SET_MUTE);
    entry.mute = mute ? 1 : 0;
    return execute("ICallCommand::setMute", entry, nullptr, nullptr);
}

int32_t CallCommand::execute(const char* faultName, VexilCtlCommand entry, ICall* call,
                             IContact* contact) {
    return guarded([&]() -> int32_t {
        if (call != nullptr) {
            entry.hasCall = 1;
            entry.callId = call->getID();
        }
        if (contact != nullptr) {
            entry.hasContact = 1;
            copyUtf8Truncated(toUtf8(contact->getName()), entry.contactName, sizeof entry.contactName);
            copyUtf8Truncated(toUtf8(contact->getPhone()), entry.contactPhone, sizeof entry.contactPhone);
        }
        entry.status = decide(faultName, entry);
        if (entry.status == VEXIL_OK) {
            apply(entry);
        }
        runtime_.commands().append(entry);
        CommandObserver::instance().notify(entry);
        return entry.status;
    });
}

int32_t CallCommand::decide(const char* faultName, const VexilCtlCommand& entry) {
    if (const auto fault = runtime_.faults().take(faultName)) {
        return *fault;
    }
    if (entry.command != VEXILCTL_CMD_SET_MUTE && entry.hasCall == 0) {
        return VEXIL_E_INVALID_ARG;
    }
    if (!runtime_.running()) {
        return VEXIL_E_NOT_INITIALIZED;
    }
    if (!runtime_.sessions().isRegistered(pluginId_)) {
        return VEXIL_E_NOT_FOUND;
    }
    return VEXIL_OK;
}

void CallCommand::apply(const VexilCtlCommand& entry) {
    HeadsetCallStates& calls = runtime_.callStates();
    switch (entry.command) {
        case VEXILCTL_CMD_INCOMING_CALL:
            calls.set(entry.callId, HeadsetCallState::Ringing);
            break;
        case VEXILCTL_CMD_OUTGOING_CALL:
            calls.set(entry.callId, HeadsetCallState::Outgoing);
            break;
        case VEXILCTL_CMD_TERMINATE_CALL:
            calls.set(entry.callId, HeadsetCallState::Ended);
            break;
        case VEXILCTL_CMD_ANSWERED_CALL:
        case VEXILCTL_CMD_RESUME_CALL:
        case VEXILCTL_CMD_INSERT_CALL:
            calls.set(entry.callId, HeadsetCallState::Active);
            break;
        case VEXILCTL_CMD_HOLD_CALL:
            calls.set(entry.callId, HeadsetCallState::Held);
            break;
        case VEXILCTL_CMD_SET_MUTE:
            calls.setMuted(entry.mute != 0);
            break;
    }
}

}  // namespace vexil
