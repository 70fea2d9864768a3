// The runtime's reports: headset buttons and dial requests become events on the plug-in's
// queue (on the runtime's threads); the worker later hands each back to ProcessVexilEvent,
// which answers it through the client's call-control operations.
#include <cwchar>
#include <string>

#include "bqlutil/Converter.h"
#include "bqlutil/LogWriter.h"
#include "calls/ClientText.h"
#include "handlers/BQLColloqVexil.h"
#include "handlers/HeadsetActions.h"
#include "plugin/BQLColloqPlugin.h"

namespace {

// The runtime's wide texts, read no further than their fields.
template <std::size_t N>
std::string narrowField(const wchar_t (&field)[N]) {
    return Converter::ConvertToString(std::wstring(field, wcsnlen(field, N)));
}

template <std::size_t N>
std::string bytesField(const char (&field)[N]) {
    return clienttext::fromField(field, N);
}

// Session-manager reports let through: 25 to 29 and 32.
bool isDeviceWideCode(int32_t code) {
    constexpr uint64_t kMask = (1ull << 25) | (1ull << 26) | (1ull << 27) | (1ull << 28) | (1ull << 29) | (1ull << 32);
    return code >= 0 && code < 33 && ((kMask >> code) & 1u) != 0;
}

std::string firedLine(const char* stem, int32_t code, const std::string& device) {
    return stem + std::to_string(code) + "event is fired for device " + device;
}

// Code 28: this headset wants to become the client's device.
constexpr int32_t kHeadsetWantsToBeActive = 28;
// Code 8 ends a call like code 2.
constexpr int32_t kTerminateAlternative = 8;

}  // namespace

BQLColloqVexil::SessionManagerEvents::SessionManagerEvents(BQLColloqVexil* eventsOwner) : owner(eventsOwner) {}

bool BQLColloqVexil::SessionManagerEvents::OnDeviceStateChanged(const DeviceStateEventArgs& args) {
    if (args.state == DEVICE_STATE_ATTACHED) {
        owner->attachToDevice();
        // A call in progress is shown on the new headset.
        if (BQLColloqPlugin* plugin = BQLColloqPlugin::existingInstance()) {
            plugin->insertCallIntoCM();
        }
    } else if (args.state == DEVICE_STATE_REMOVED) {
        owner->detachFromDevice();
    }
    return true;
}

bool BQLColloqVexil::SessionManagerEvents::OnCallStateChanged(const CallStateEventArgs& args) {
    if (!isDeviceWideCode(args.callState)) {
        return true;
    }
    const std::string device = narrowField(args.devicePath);
    const std::string line =
        firedLine("BQLColloqVexil::SessionManagerEvents::OnCallStateChanged ", args.callState, device);
    LogWriter_debug(line.c_str(), "OnCallStateChanged", "<>");
    owner->pushEvent(std::make_shared<BQLColloqEvent>(BQL_NO_CALL_ID, static_cast<eCallState>(args.callState), device));
    return true;
}

bool BQLColloqVexil::OnCallStateChanged(const CallStateEventArgs& args) {
    const std::string device = narrowField(args.devicePath);
    const std::string line = firedLine("BQLColloqVexil::OnCallStateChanged ", args.callState, device);
    LogWriter_debug(line.c_str(), "OnCallStateChanged", "<>");
    const auto code = static_cast<eCallState>(args.callState);
    if (code == CALL_STATE_DEVICE_CHANGE) {
        return true;  // this channel does not carry device changes
    }
    if (code == CALL_STATE_DTMF_KEY) {
        pushEvent(std::make_shared<BQLColloqEvent>(args.callId, code, bytesField(args.dtmfKeys),
                                                   bytesField(args.dtmfKeys2), device));
    } else {
        pushEvent(std::make_shared<BQLColloqEvent>(args.callId, code, device));
    }
    return true;
}

bool BQLColloqVexil::OnCallRequest(const CallRequestEventArgs& args) {
    std::string number = narrowField(args.number);
    if (number.empty()) {
        number = narrowField(args.alternateNumber);
    }
    pushEvent(std::make_shared<BQLColloqEvent>(BQL_COLLOQ_MAKE_CALL_EVENT, "phone", number));
    return true;
}

void BQLColloqVexil::pushEvent(std::shared_ptr<BQLColloqEvent> event) {
    if (BQLEventQueue* queue = eventQueue.load()) {
        queue->Push(event);
    }
}

void BQLColloqVexil::ProcessVexilEvent(std::shared_ptr<BQLColloqEvent> event) {
    using headsetactions::Button;
    BQLColloqPlugin& plugin = *BQLColloqPlugin::getInstance();
    Accessory_CallControlAPI_v1_0_t* api = headsetactions::beginHeadsetEvent(plugin, *event);
    if (api == nullptr) {
        return;
    }
    const std::string& device = event->info;
    switch (static_cast<int32_t>(event->vexilState)) {
        case CALL_STATE_ACCEPT_CALL:
            headsetactions::pressButton(Button::Accept, plugin, *api, device);
            break;
        case CALL_STATE_HOLD_CALL:
            headsetactions::holdIfSingleCall(plugin, *api, device);
            break;
        case CALL_STATE_RESUME_CALL:
            headsetactions::pressButton(Button::Resume, plugin, *api, device);
            break;
        case CALL_STATE_MUTEON:
            headsetactions::pressButton(Button::MuteOn, plugin, *api, device);
            break;
        case CALL_STATE_MUTEOFF:
            headsetactions::pressButton(Button::MuteOff, plugin, *api, device);
            break;
        case CALL_STATE_REJECT_CALL:
            headsetactions::pressButton(Button::Reject, plugin, *api, device);
            break;
        case CALL_STATE_DTMF_KEY:
            // The runtime's first key text; an empty one sends nothing, like "255".
            headsetactions::sendDtmfKeys(plugin, *api, device, event->name);
            break;
        case CALL_STATE_TERMINATE_CALL:
        case kTerminateAlternative:
            headsetactions::endCallFromHeadset(plugin, *api, event->callId, device,
                                               headsetactions::EndCallStyle::Direct);
            break;
        case kHeadsetWantsToBeActive:
            plugin.changeActiveColloqDevice(device);
            plugin.setColloqForeground();
            break;
        case CALL_STATE_DEVICE_CHANGE:
            changeDeviceFromHeadset(plugin, device);
            break;
        default:
            break;
    }
}

void BQLColloqVexil::changeDeviceFromHeadset(BQLColloqPlugin& plugin, const std::string& device) {
    if (!plugin.hostCanChangeDevice()) {
        plugin.adoptActiveDevicePath(device);
        plugin.WriteLog(ACCESSORY_LOG_TRACE,
                        "CALL_STATE_DEVICE_CHANGE is gotten but colloq client does not support changing of the "
                        "active device.");
    }
    const std::string clientPath = headsetactions::clientDeviceIdFromName(GetDeviceNameFromVexilPath(device));
    if (!clientPath.empty()) {
        plugin.changeActiveColloqDevice(clientPath);
        if (plugin.callCount() != 0) {
            plugin.insertCallIntoCM();
        }
    }
    plugin.setColloqForeground();
}
