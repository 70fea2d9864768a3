#include "handlers/HeadsetActions.h"

#include "plugin/BQLColloqPlugin.h"
#include "vexilrt/Events.h"

namespace headsetactions {

namespace {

constexpr const char* kCasePrefix = "processVexilEvent(EventPtr comeEvent): case: ";

void logCase(BQLColloqPlugin& plugin, const char* name) {
    plugin.WriteLog(ACCESSORY_LOG_TRACE, (std::string(kCasePrefix) + name).c_str());
}

void replaceFirst(std::string& text, char from, char to) {
    const std::string::size_type at = text.find(from);
    if (at != std::string::npos) {
        text[at] = to;
    }
}

}  // namespace

Accessory_CallControlAPI_v1_0_t* beginHeadsetEvent(BQLColloqPlugin& plugin, const BQLColloqEvent& event) {
    plugin.WriteLog(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): CallID = %d", event.callId);
    Accessory_CallControlAPI_v1_0_t* api = plugin.getCallControlAPI();
    if (api == nullptr) {
        plugin.WriteLog(ACCESSORY_LOG_MISSING_TABLE,
                        "processVexilEvent(EventPtr comeEvent): Failed to get Accessory Provider API!");
        return nullptr;
    }
    if (event.info.empty()) {
        // Events without a device are treated as fakes.
        plugin.WriteLog(ACCESSORY_LOG_MILESTONE, "processVexilEvent(EventPtr comeEvent): Fake device, ignore events!");
        return nullptr;
    }
    return api;
}

void pressButton(Button button, BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api,
                 const std::string& device) {
    switch (button) {
        case Button::Accept:
            logCase(plugin, "CALL_STATE_ACCEPT_CALL");
            api.answerCall(device.c_str());
            break;
        case Button::Resume:
            logCase(plugin, "CALL_STATE_RESUME_CALL");
            api.resumeCall(device.c_str());
            break;
        case Button::MuteOn:
            logCase(plugin, "CALL_STATE_MUTEON");
            api.muteCall(device.c_str());
            break;
        case Button::MuteOff:
            logCase(plugin, "CALL_STATE_MUTEOFF");
            api.unmuteCall(device.c_str());
            break;
        case Button::Reject:
            logCase(plugin, "CALL_STATE_REJECT_CALL");
            api.rejectCall(device.c_str());
            break;
    }
}

void sendDtmfKeys(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, const std::string& device,
                  const std::string& keys) {
    plugin.WriteLog(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_DTMF_KEY: %s",
                    keys.c_str());
    if (keys == VEXIL_NO_DTMF_KEY) {
        return;
    }
    for (char key : keys) {
        api.sendDtmf(device.c_str(), key);
    }
}

void holdIfSingleCall(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, const std::string& device) {
    logCase(plugin, "CALL_STATE_HOLD_CALL");
    if (plugin.callCount() == 1) {
        api.holdCall(device.c_str());
    }
}

void endCallFromHeadset(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, int callId,
                        const std::string& device, EndCallStyle style) {
    logCase(plugin, "CALL_STATE_TERMINATE_CALL");
    if (callId == BQL_NO_CALL_ID) {
        return;
    }
    if (plugin.GetCallById(callId) && !plugin.isActiveDeviceBrimquell()) {
        plugin.WriteLog(ACCESSORY_LOG_TRACE, "CALL_STATE_TERMINATE_CALL is ignored as the call is hadled by other vendor");
        return;
    }
    if (plugin.getIsMuted()) {
        api.unmuteCall(device.c_str());
        if (style == EndCallStyle::Hub) {
            plugin.setIsMuted(false);
        }
    }
    const int16_t result = api.endCall(device.c_str());
    if (style == EndCallStyle::Hub) {
        plugin.WriteLog(ACCESSORY_LOG_TRACE, "CALL_STATE_TERMINATE_CALL: m_gAccessoryProviderAPIs->endCall returns %d",
                        result);
    } else {
        static const std::string kEndCallLine =
            "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_TERMINATE_CALL." + std::string(58, ' ') +
            "endCall fails. Mark the call for termination on connected.";
        plugin.WriteLog(ACCESSORY_LOG_TRACE, kEndCallLine.c_str());
    }
    // A call no longer tracked has nothing to mark.
    if (const BQLColloqPlugin::CallPtr call = plugin.GetCallById(callId)) {
        call->setState(BQL_CALL_TERMINATE_PENDING);
    }
}

std::string clientDeviceIdFromName(const std::string& name) {
    if (name.empty()) {
        return std::string();
    }
    std::string adapted = name;
    replaceFirst(adapted, '.', '_');
    replaceFirst(adapted, '-', '_');
    return "AppleUSBAudioEngine:Brimquell:" + adapted;
}

}  // namespace headsetactions
