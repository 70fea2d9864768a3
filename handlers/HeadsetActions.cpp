#include "handlers/HeadsetActions.h"

#include "plugin/BQLColloqPlugin.h"
#include "vexilrt/Events.h"

namespace headsetactions {

namespace {

void replaceFirst(std::string& text, char from, char to) {
    const std::string::size_type at = text.find(from);
    if (at != std::string::npos) {
        text[at] = to;
    }
}

}  // namespace

void sendDtmfKeys(Accessory_CallControlAPI_v1_0_t& api, const std::string& device, const std::string& keys) {
    if (keys == VEXIL_NO_DTMF_KEY) {
        return;
    }
    for (char key : keys) {
        api.sendDtmf(device.c_str(), key);
    }
}

void holdIfSingleCall(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, const std::string& device) {
    if (plugin.callCount() == 1) {
        api.holdCall(device.c_str());
    }
}

void endCallFromHeadset(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, int callId,
                        const std::string& device, EndCallStyle style) {
    plugin.WriteLog(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_TERMINATE_CALL");
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
