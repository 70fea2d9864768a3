#include "Listeners.h"

#include <string>
#include <thread>

#include "Console.h"
#include "Text.h"

namespace demo {

std::string callStateName(int32_t code) {
    switch (code) {
        case CALL_STATE_ACCEPT_CALL:
            return "ACCEPT_CALL";
        case CALL_STATE_TERMINATE_CALL:
            return "TERMINATE_CALL";
        case CALL_STATE_HOLD_CALL:
            return "HOLD_CALL";
        case CALL_STATE_RESUME_CALL:
            return "RESUME_CALL";
        case CALL_STATE_MUTEON:
            return "MUTEON";
        case CALL_STATE_MUTEOFF:
            return "MUTEOFF";
        case CALL_STATE_DTMF_KEY:
            return "DTMF_KEY";
        case CALL_STATE_REJECT_CALL:
            return "REJECT_CALL";
        case CALL_STATE_DEVICE_CHANGE:
            return "DEVICE_CHANGE";
        default:
            return "code " + std::to_string(code);
    }
}

namespace {

HeardEvent fromCallState(HeardEvent::Kind kind, const CallStateEventArgs& args) {
    HeardEvent event;
    event.kind = kind;
    event.callId = args.callId;
    event.code = args.callState;
    event.devicePath = narrow(args.devicePath);
    event.keys = args.dtmfKeys;
    event.thread = std::this_thread::get_id();
    event.threadName = threadName();
    return event;
}

}  // namespace

bool CallListener::OnCallStateChanged(const CallStateEventArgs& args) {
    HeardEvent event = fromCallState(HeardEvent::Kind::CallState, args);
    Console::line("heard: headset button " + callStateName(event.code) + " (" + std::to_string(event.code) +
                  ") for call " + std::to_string(event.callId) + ", keys \"" + event.keys + "\", from " +
                  event.devicePath);
    inbox_.add(std::move(event));
    return true;
}

bool CallListener::OnCallRequest(const CallRequestEventArgs& args) {
    HeardEvent event;
    event.kind = HeardEvent::Kind::CallRequest;
    event.number = narrow(args.number);
    event.alternateNumber = narrow(args.alternateNumber);
    event.devicePath = narrow(args.devicePath);
    event.thread = std::this_thread::get_id();
    event.threadName = threadName();
    Console::line("heard: call request for \"" + event.number + "\" (alternate \"" + event.alternateNumber +
                  "\") from " + event.devicePath);
    inbox_.add(std::move(event));
    return true;
}

bool DeviceListener::OnCallStateChanged(const CallStateEventArgs& args) {
    HeardEvent event = fromCallState(HeardEvent::Kind::ManagerCallState, args);
    Console::line("heard: session-manager report " + callStateName(event.code) + " from " + event.devicePath);
    inbox_.add(std::move(event));
    return true;
}

bool DeviceListener::OnDeviceStateChanged(const DeviceStateEventArgs& args) {
    HeardEvent event;
    event.devicePath = narrow(args.devicePath);
    event.thread = std::this_thread::get_id();
    event.threadName = threadName();
    switch (args.state) {
        case DEVICE_STATE_ATTACHED:
            event.kind = HeardEvent::Kind::DeviceAttached;
            Console::line("heard: headset attached: " + event.devicePath);
            break;
        case DEVICE_STATE_REMOVED:
            event.kind = HeardEvent::Kind::DeviceRemoved;
            Console::line("heard: headset removed: " + event.devicePath);
            break;
        default:
            Console::line("heard: device state " + std::to_string(args.state) + ": " + event.devicePath);
            break;
    }
    inbox_.add(std::move(event));
    return true;
}

}  // namespace demo
