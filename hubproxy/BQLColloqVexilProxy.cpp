#include "hubproxy/BQLColloqVexilProxy.h"

#include <cstdlib>
#include <string>

#include "bqlutil/Converter.h"
#include "bqlutil/LogWriter.h"
#include "handlers/HeadsetActions.h"
#include "hubproxy/ColloqRecordText.h"
#include "hubproxy/DevicePid.h"
#include "platform/RunOnce.h"
#include "plugin/BQLColloqPlugin.h"

namespace {

// The hub's record carries wide texts; a dial number and the active-device path are narrowed
// character by character, keeping the low 8 bits, as the hub means them.
template <std::size_t N>
std::string lowBytes(const wchar_t (&field)[N]) {
    const std::wstring wide = ReadWideField(field);
    std::string narrow;
    narrow.reserve(wide.size());
    for (wchar_t c : wide) {
        narrow.push_back(static_cast<char>(static_cast<uint32_t>(c) & 0xFFu));
    }
    return narrow;
}

constexpr const char* kSetActiveDeviceLocation = "virtual void BQLColloqVexilProxy::setActiveDevice(const char *)";
constexpr const char* kMuteLocation = "virtual bool BQLColloqVexilProxy::performMuteCall(bool)";

}  // namespace

BQLColloqVexilProxy* BQLColloqVexilProxy::getInstance() {
    static platform::OnceFlag once;
    static BQLColloqVexilProxy* instance = nullptr;
    platform::runOnce(once, [] { instance = new BQLColloqVexilProxy(); });
    return instance;
}

BQLColloqVexilProxy::BQLColloqVexilProxy() : endpoint(std::make_unique<CColloqProxy<>>()) {
    endpoint->registerCallback(this);
}

BQLColloqVexilProxy::~BQLColloqVexilProxy() { endpoint->unregisterCallback(this); }

void BQLColloqVexilProxy::OpenPipe() { endpoint->OpenPipe(); }

int BQLColloqVexilProxy::getVexilActiveDevicePath(std::string* path) {
    boost::lock_guard<boost::mutex> guard(proxyLock);
    if (activeDevicePath.empty()) {
        return -1;
    }
    *path = activeDevicePath;
    return 0;
}

bool BQLColloqVexilProxy::sendCall(ColloqCallState state, ICall* call, const wchar_t* name, const wchar_t* phone,
                                   const char* logText, const char* location) {
    if (call == nullptr) {
        return false;  // nothing to tell the hub about
    }
    endpoint->Send(MESSAGE_TYPE_CALL, state, call->getID(), name, phone, "", "");
    const std::string line = logText + std::to_string(call->getID());
    LogWriter_debug(line.c_str(), location, "<>");
    return true;
}

bool BQLColloqVexilProxy::performIncomingCall(ICall* pCall, IContact* pContact) {
    return sendCall(COLLOQ_INCOMING_CALL, pCall, pContact ? pContact->getName() : L"",
                    pContact ? pContact->getPhone() : L"", "Incoming call sent to Vexil... line:",
                    "virtual bool BQLColloqVexilProxy::performIncomingCall(pCall, pContact)");
}

bool BQLColloqVexilProxy::performOutgoingCall(ICall* pCall, IContact* pContact) {
    return sendCall(COLLOQ_OUTGOING_CALL, pCall, pContact ? pContact->getName() : L"",
                    pContact ? pContact->getPhone() : L"", "Outgoing call sent to Vexil... line:",
                    "virtual bool BQLColloqVexilProxy::performOutgoingCall(pCall, pContact)");
}

bool BQLColloqVexilProxy::performTerminateCall(ICall* pCall) {
    return sendCall(COLLOQ_TERMINATE_CALL, pCall, L"", L"", "Terminate call sent to Vexil... line:",
                    "virtual bool BQLColloqVexilProxy::performTerminateCall(pCall)");
}

bool BQLColloqVexilProxy::performAnsweredCall(ICall* pCall) {
    return sendCall(COLLOQ_ANSWERED_CALL, pCall, L"", L"", "Answered call sent to Vexil... line:",
                    "virtual bool BQLColloqVexilProxy::performAnsweredCall(pCall)");
}

bool BQLColloqVexilProxy::performHoldCall(ICall* pCall) {
    return sendCall(COLLOQ_HOLD_CALL, pCall, L"", L"", "Hold call sent to Vexil... line:",
                    "virtual bool BQLColloqVexilProxy::performHoldCall(pCall)");
}

bool BQLColloqVexilProxy::performResumeCall(ICall* pCall) {
    return sendCall(COLLOQ_RESUME_CALL, pCall, L"", L"", "Resume call sent to Vexil... line:",
                    "virtual bool BQLColloqVexilProxy::performResumeCall(pCall)");
}

bool BQLColloqVexilProxy::performInsertCall(ICall* pCall, IContact* pContact) {
    if (pContact == nullptr) {
        return false;
    }
    return sendCall(COLLOQ_INSERT_CALL, pCall, pContact->getName(), L"", "Insert call sent to Vexil... line:",
                    "virtual bool BQLColloqVexilProxy::performInsertCall(pCall, pContact)");
}

bool BQLColloqVexilProxy::performMuteCall(bool mute) {
    endpoint->SendMute(MESSAGE_TYPE_CALL, mute ? COLLOQ_MUTE_ON : COLLOQ_MUTE_OFF, 0, L"", L"", "", "");
    LogWriter_debug(mute ? "Mute ON call sent to Vexil..." : "Mute OFF sent to Vexil...", kMuteLocation, "<>");
    return true;
}

void BQLColloqVexilProxy::setActiveDevice(const char* deviceId) {
    if (deviceId == nullptr) {
        return;
    }
    const uint32_t productId = static_cast<uint32_t>(std::strtol(hidal_get_pid(deviceId).c_str(), nullptr, 16));
    endpoint->SendSetActiveDevice(productId);
    const std::string line = "Set active device sent to Vexil... line:" + std::to_string(productId);
    LogWriter_debug(line.c_str(), kSetActiveDeviceLocation, "<>");
    // The hub answers with the device it made active; the local path changes only then.
    endpoint->SendGetActiveDevice();
    LogWriter_debug("Get active device sent to Vexil...", kSetActiveDeviceLocation, "<>");
}

int BQLColloqVexilProxy::connectToVexil(BQLEventQueue* queue) {
    boost::lock_guard<boost::mutex> guard(proxyLock);
    eventQueue = queue;
    return 0;
}

int BQLColloqVexilProxy::disconnectFromVexil() {
    endpoint->ClosePipe();
    // A record that still arrives (the hub check may reopen the pipe) has no queue to go to.
    boost::lock_guard<boost::mutex> guard(proxyLock);
    eventQueue = nullptr;
    return 0;
}

void BQLColloqVexilProxy::pushEvent(const std::shared_ptr<BQLColloqEvent>& event) {
    boost::lock_guard<boost::mutex> guard(proxyLock);
    if (eventQueue != nullptr) {
        eventQueue->Push(event);
    }
}

void BQLColloqVexilProxy::notifyPluginAboutEvent(const ColloqCallArgs& record) {
    {
        // Records that arrive while not connected have nowhere to go.
        boost::lock_guard<boost::mutex> guard(proxyLock);
        if (eventQueue == nullptr) {
            return;
        }
    }
    switch (record.messageType) {
        case MESSAGE_TYPE_CALL:
            pushEvent(std::make_shared<BQLColloqEvent>(record.callId, static_cast<eCallState>(record.callState),
                                                       ReadNarrowField(record.extraText),
                                                       ReadNarrowField(record.dtmfKeys),
                                                       Converter::ConvertToString(ReadWideField(record.devicePath))));
            break;
        case MESSAGE_TYPE_DIAL:
            pushEvent(std::make_shared<BQLColloqEvent>(BQL_COLLOQ_MAKE_CALL_EVENT, "phone", lowBytes(record.phoneNumber)));
            break;
        case MESSAGE_TYPE_ACTIVE_DEVICE:
            if (record.deviceAction == DEVICE_ACTION_NONE) {
                boost::lock_guard<boost::mutex> guard(proxyLock);
                activeDevicePath.clear();
            } else if (record.deviceAction == DEVICE_ACTION_ACTIVE) {
                {
                    boost::lock_guard<boost::mutex> guard(proxyLock);
                    activeDevicePath = lowBytes(record.devicePath);
                }
                // A call in progress is announced to the new device.
                if (BQLColloqPlugin* plugin = BQLColloqPlugin::existingInstance()) {
                    plugin->insertCallIntoCM();
                }
                pushEvent(std::make_shared<BQLColloqEvent>(BQL_NO_CALL_ID, CALL_STATE_DEVICE_CHANGE,
                                                           Converter::ConvertToString(ReadWideField(record.devicePath))));
            }
            break;
        default:
            break;
    }
}

void BQLColloqVexilProxy::ProcessVexilEvent(std::shared_ptr<BQLColloqEvent> event) {
    using headsetactions::Button;
    BQLColloqPlugin& plugin = *BQLColloqPlugin::getInstance();
    Accessory_CallControlAPI_v1_0_t* api = headsetactions::beginHeadsetEvent(plugin, *event);
    if (api == nullptr) {
        return;
    }
    const std::string& device = event->info;
    // The hub's own numbering, not the runtime's.
    switch (static_cast<uint32_t>(event->vexilState)) {
        case COLLOQ_DEVICE_SELECTED:
            plugin.changeActiveColloqDevice(device);
            plugin.setColloqForeground();
            break;
        case COLLOQ_FOREGROUND:
        case COLLOQ_FOREGROUND_ALT:
            plugin.setColloqForeground();
            break;
        case COLLOQ_FOREGROUND_WHEN_IDLE:
        case COLLOQ_FOREGROUND_WHEN_IDLE_ALT:
            if (plugin.callCount() == 0) {
                plugin.setColloqForeground();
            }
            break;
        case COLLOQ_ACCEPT_CALL:
            headsetactions::pressButton(Button::Accept, plugin, *api, device);
            break;
        case COLLOQ_TERMINATE_CALL:
        case COLLOQ_TERMINATE_CALL_ALT:
            headsetactions::endCallFromHeadset(plugin, *api, event->callId, device,
                                               headsetactions::EndCallStyle::Hub);
            break;
        case COLLOQ_HOLD_CALL:
            headsetactions::holdIfSingleCall(plugin, *api, device);
            break;
        case COLLOQ_RESUME_CALL:
            headsetactions::pressButton(Button::Resume, plugin, *api, device);
            break;
        case COLLOQ_MUTE_ON:
            headsetactions::pressButton(Button::MuteOn, plugin, *api, device);
            break;
        case COLLOQ_MUTE_OFF:
            headsetactions::pressButton(Button::MuteOff, plugin, *api, device);
            break;
        case COLLOQ_DTMF_KEY:
            headsetactions::sendDtmfKeys(plugin, *api, device, event->value);
            break;
        case COLLOQ_REJECT_CALL:
            headsetactions::pressButton(Button::Reject, plugin, *api, device);
            break;
        case COLLOQ_DEVICE_CHANGE:
            changeDeviceFromHub(plugin, *event);
            break;
        default:  // an active-device report (32) did its work on arrival
            break;
    }
}

void BQLColloqVexilProxy::changeDeviceFromHub(BQLColloqPlugin& plugin, const BQLColloqEvent& event) {
    if (!plugin.hostCanChangeDevice()) {
        plugin.adoptActiveDevicePath(event.info);
        plugin.WriteLog(ACCESSORY_LOG_TRACE,
                        "CALL_STATE_DEVICE_CHANGE is gotten but colloq client does not support changing of the "
                        "active device.");
    }
    // The hub names the device itself; no path is parsed.
    plugin.changeActiveColloqDevice(headsetactions::clientDeviceIdFromName(event.value));
    if (plugin.callCount() != 0) {
        plugin.insertCallIntoCM();
    }
}
