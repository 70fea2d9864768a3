// The plug-in's own list of the client's calls and its idea of the client's audio device.
// Walks that call out work on copies of the list, so its lock is never held while a handler runs.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

#include "bqlutil/Converter.h"
#include "bqlutil/DeviceIds.h"
#include "calls/copyCallInfo.h"
#include "handlers/BQLColloqVexil.h"
#include "handlers/DeviceIdentity.h"
#include "plugin/BQLColloqPlugin.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace {

// The client lists at most this many calls when asked.
constexpr int kMaxLoadedCalls = 10;

// The client's call states as events that render the call as if just reported; 10 (held)
// first connects, then holds.
BQLColloqEventType eventForClientState(int32_t clientState, BQLColloqEventType previous) {
    switch (clientState) {
        case 0: case 1: case 2: case 4: case 5: case 8:
            return static_cast<BQLColloqEventType>(0);  // queued, ignored by the worker
        case 3: case 6:
            return OUTGOING_CALL_EVENT;
        case 7:
            return INCOMING_CALL_EVENT;
        case 9:
            return CONNECTED_CALL_EVENT;
        case 10:
            return ON_HOLD_CALL_EVENT;
        default:
            return previous;  // an unknown state keeps the kind chosen for the record before
    }
}

}  // namespace

// The lock covers the walk only, never the caller's work with the call. The walk reads our own
// calls' ids and copies one pointer: copying the whole list made every event cost an allocation
// per call held.
BQLColloqPlugin::CallPtr BQLColloqPlugin::GetCallById(int id) {
    return callQueue.FindFirst([id](const CallPtr& call) { return call->getID() == id; });
}

void BQLColloqPlugin::loadCalls() {
    if (callQueue.Size() != 0) {
        return;  // loaded once per activation
    }
    std::vector<Accessory_CallInfo_v1_0_t> records(kMaxLoadedCalls);
    std::vector<Accessory_CallInfo_v1_0_t*> pointers;
    for (auto& record : records) {
        std::memset(&record, 0, sizeof record);
        pointers.push_back(&record);
    }
    Accessory_CallControlAPI_v1_0_t* api = callControlAPI.load();
    if (api == nullptr || api->getCalls == nullptr) {
        return;
    }
    const int filled = std::min(api->getCalls(pointers.data(), kMaxLoadedCalls), kMaxLoadedCalls);
    BQLColloqEventType kind = static_cast<BQLColloqEventType>(0);
    for (int i = 0; i < filled; ++i) {
        Accessory_CallInfo_v1_0_t record = copyCallInfo(&records[i]);
        if (trackCallId(record.callId)) {
            callQueue.Push(std::make_shared<BQLColloqCall>(&record));
        }
        if (record.callState == 10) {
            queueEvent(CONNECTED_CALL_EVENT, record.callId);
        }
        kind = eventForClientState(record.callState, kind);
        queueEvent(kind, record.callId);
    }
}

void BQLColloqPlugin::removeCalls() {
    {
        bql::MutexLock guard(knownCallIdsLock);
        knownCallIds.clear();
    }
    callQueue.Clear();
}

bool BQLColloqPlugin::hasBrimquellDevices() {
    IDeviceManager* manager = nullptr;
    if (getDeviceManager(&manager) != 0 || manager == nullptr) {
        return false;
    }
    IDeviceEnumeration* devices = nullptr;
    if (manager->getDevices(&devices) != 0) {
        if (devices) {
            devices->Release();
        }
        return false;
    }
    if (devices == nullptr) {
        return false;
    }
    const bool present = devices->count() != 0;
    devices->Release();
    return present;
}

void BQLColloqPlugin::updatePluginState() {
    const bool present = hasBrimquellDevices();
    if (present && !isPluginActive.load()) {
        isPluginActive.exchange(true);
        loadCalls();
    } else if (!present && isPluginActive.load()) {
        isPluginActive.exchange(false);
        removeCalls();
    }
}

void BQLColloqPlugin::getDevicePID(std::string path) {
    if (path.empty()) {
        return;
    }
    uint16_t vendorId = 0;
    uint16_t productId = 0;
    boost::lock_guard<boost::recursive_mutex> guard(deviceMutex);
    if (!Brimquell::get_vid_pid_from_device_path(Converter::ConvertToWString(path), &vendorId, &productId) ||
        vendorId != BRIMQUELL_USB_VID) {
        activeDeviceIsBrimquell.exchange(false);
        return;
    }
    std::string pid = Converter::ConvertToHexFormattedStr(productId);
    std::transform(pid.begin(), pid.end(), pid.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    activeDevicePid = pid;
    activeDeviceIsBrimquell.exchange(true);
}

int BQLColloqPlugin::changeVexilActiveDevice(const char* colloqDeviceId) {
    updatePluginState();
    const std::string path = BQLColloqVexil::getInstance()->GetPathFromColloqId(colloqDeviceId);
    if (path == getActiveDevicePath()) {
        return 0;
    }
    {
        boost::lock_guard<boost::recursive_mutex> guard(deviceMutex);
        getDevicePID(path);
        activeDevicePath = path;
    }
    if (isBrimquell(path)) {
        selector->setActiveDevice(getActiveDevicePid().c_str());
    }
    return 0;
}

short BQLColloqPlugin::changeActiveColloqDevice(std::string path) {
    Accessory_CallControlAPI_v1_0_t* api = callControlAPI.load();
    if (api == nullptr) {
        return -2;
    }
    const std::string pid = getActiveDevicePid();
    if (isActiveDeviceBrimquell()) {
        if (pid.empty()) {
            return 0;
        }
        if (path.size() >= pid.size() && path.find(pid) != std::string::npos) {
            return 0;  // already the device meant
        }
    }
    const std::string previous = getActiveDevicePath();
    api->releaseActiveDevice(previous.c_str());
    getDevicePID(previous);
    const int16_t result = api->activeDeviceChanged(path.c_str());
    WriteLog(ACCESSORY_LOG_TRACE, "activeDeviceChanged returns '%d' for device '%s' ", result, path.c_str());
    return result;
}

int BQLColloqPlugin::TerminateAllCalls() {
    std::list<CallPtr> calls;
    callQueue.GetQueue(calls);
    int result = 0;
    for (const CallPtr& call : calls) {
        if (!selector->performTerminateCall(call.get())) {
            result = -1;
        }
    }
    return result;
}

short BQLColloqPlugin::insertCallIntoCM() {
    std::list<CallPtr> calls;
    callQueue.GetQueue(calls);
    short result = 0;
    for (const CallPtr& call : calls) {
        const auto contact = call->getContact();
        result = selector->performInsertCall(call.get(), contact.get());
        if (call->getState() == BQL_CALL_HELD) {
            result = selector->performHoldCall(call.get());
        }
    }
    if (!calls.empty()) {
        selector->performMuteCall(getIsMuted());
    }
    return result;
}

void BQLColloqPlugin::setColloqForeground() {
    WriteLog(ACCESSORY_LOG_TRACE, "setColloqForeground() is started");
    if (Accessory_CallControlAPI_v1_0_t* api = callControlAPI.load()) {
        api->makeCall(getActiveDevicePath().c_str(), "");
    }
    WriteLog(ACCESSORY_LOG_TRACE, "setColloqForeground() is finished");
}

std::string BQLColloqPlugin::getActiveDevicePath() {
    boost::lock_guard<boost::recursive_mutex> guard(deviceMutex);
    return activeDevicePath;
}

std::string BQLColloqPlugin::getActiveDevicePid() {
    boost::lock_guard<boost::recursive_mutex> guard(deviceMutex);
    return activeDevicePid;
}

void BQLColloqPlugin::setActiveDevicePath(const std::string& path) {
    boost::lock_guard<boost::recursive_mutex> guard(deviceMutex);
    activeDevicePath = path;
}

void BQLColloqPlugin::adoptActiveDevicePath(const std::string& path) {
    boost::lock_guard<boost::recursive_mutex> guard(deviceMutex);
    activeDevicePath = path;
    getDevicePID(path);
}
