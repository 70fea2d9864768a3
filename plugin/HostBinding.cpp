// Binding to the client: fetching its tables through the entry point, registering our
// callbacks, starting the worker and connecting the headset side; and undoing all of it.
#include <cstring>

#include "bqlutil/LogWriter.h"
#include "plugin/BQLColloqPlugin.h"
#include "plugin/funclog.h"

namespace {

// The client fills the first three; we fill the callback table.
Accessory_CallControlAPI_v1_0_t callControlTable;
Accessory_LoggerAPI_v1_0_t loggerTable;
ACCLogger_t loggerRecord;
Accessory_CallControlCallback_v1_0_t callbackTableStorage;

constexpr const char* kInitializeColloqPoints =
    "int BQLColloqPlugin::initializeColloqPoints(accessoryAPIEntryPoint_t)";
constexpr const char* kRegisterCallbacks = "int BQLColloqPlugin::registerCallbacks()";
constexpr const char* kUnregisterCallbacks = "void BQLColloqPlugin::unregisterCallbacks()";

}  // namespace

int BQLColloqPlugin::initializeColloqPoints(accessoryAPIEntryPoint_t entry) {
    funclog trace(kInitializeColloqPoints);

    // A table the client refuses stays empty rather than keeping an earlier bind's slots.
    callControlTable = Accessory_CallControlAPI_v1_0_t{};
    callControlAPI.store(&callControlTable);
    if (entry(ACCESSORY_API_CALL_CONTROL_V1_0, &callControlTable) == ACCESSORY_STATUS_FAILURE) {
        LogWriter_error("Failed to get call control AM API.", kInitializeColloqPoints, "<>");
        return -1;
    }
    loggerTable = Accessory_LoggerAPI_v1_0_t{};
    loggerAPI.store(&loggerTable);
    if (entry(ACCESSORY_API_LOGGER_V1_0, &loggerTable) == ACCESSORY_STATUS_FAILURE) {
        LogWriter_error("Fail to get the logger API.", kInitializeColloqPoints, "<>");
        return -1;
    }
    loggerHandle.store(&loggerRecord);
    if (loggerTable.getLogger("BQLColloqPlugin", &loggerRecord) == ACCESSORY_STATUS_FAILURE) {
        LogWriter_error("Fail to get the logger.", kInitializeColloqPoints, "<>");
        return -1;
    }

    pluginVersion.store(kPluginVersion);
    checkColloqVersion();
    WriteLog(ACCESSORY_LOG_MILESTONE, "Brimquell Colloq Plug-in Version: %s ", kPluginVersion);
    WriteLog(ACCESSORY_LOG_TRACE, "Logger API is initialized successfully. Registering callbacks...");

    if (registerCallbacks() == -1) {
        return -1;
    }
    // A second Start without Stop binds again but keeps the worker it started: a second one
    // would race the first for events and leave one of them waiting for a stop that never comes.
    if (!workerThread || !workerThread->joinable()) {
        workerThread = std::make_shared<boost::thread>(&BQLColloqPlugin::pluginThread, this);
    }
    WriteLog(ACCESSORY_LOG_MILESTONE, "Connected to Colloq successfully");

    if (selector->connectToVexil(&eventQueue) != 0) {
        WriteLog(ACCESSORY_LOG_MILESTONE, "Failed to connect to VexilRT");
        return -1;
    }
    WriteLog(ACCESSORY_LOG_MILESTONE, "Connected to VexilRT successfully");

    if (!hostCanChangeDevice()) {
        // Fetched outside the device mutex: no lock is held while the handler runs. A failed
        // fetch leaves the path as it was.
        std::string path = getActiveDevicePath();
        const int fetched = selector->getVexilActiveDevicePath(&path);
        {
            boost::lock_guard<boost::recursive_mutex> guard(deviceMutex);
            activeDevicePath = path;
            getDevicePID(path);
        }
        WriteLog(ACCESSORY_LOG_TRACE, "change vexil active device by force returns '%d'", fetched);
    }
    return 0;
}

int BQLColloqPlugin::registerCallbacks() {
    Accessory_CallControlCallback_v1_0_t* table = &callbackTableStorage;
    callbackTable.store(table);
    std::memset(table, 0, sizeof *table);
    table->onAudioMute = &BQLColloqPlugin::onAudioMute;
    table->onAudioUnmute = &BQLColloqPlugin::onAudioUnmute;
    table->onOffHook = &BQLColloqPlugin::onOffHook;
    table->onReorder = &BQLColloqPlugin::onReorder;
    table->onBusy = &BQLColloqPlugin::onBusy;
    table->onIncoming = &BQLColloqPlugin::onIncoming;
    table->onCallWaiting = &BQLColloqPlugin::onCallWaiting;
    table->onConnected = &BQLColloqPlugin::onConnected;
    table->onHold = &BQLColloqPlugin::onHold;
    table->onOnHook = &BQLColloqPlugin::onOnHook;
    table->onRemoteAlerting = &BQLColloqPlugin::onRemoteAlerting;
    table->onVolumeChanged = &BQLColloqPlugin::onVolumeChanged;
    table->onActiveDeviceChanged = &BQLColloqPlugin::onActiveDeviceChanged;
    table->setDeviceMicrophoneVolume = &BQLColloqPlugin::setDeviceMicrophoneVolume;
    table->setDeviceSpeakerVolume = &BQLColloqPlugin::setDeviceSpeakerVolume;
    table->onPhoneRegistrationStatusChanged = &BQLColloqPlugin::onPhoneRegistrationStatusChanged;
    table->notifySubscriberNumbers = &BQLColloqPlugin::notifySubscriberNumbers;

    // Only -1 is a failure here; unregistration below is stricter on purpose.
    if (callControlAPI.load()->registerAccessoryCallbacks(table) == ACCESSORY_STATUS_FAILURE) {
        WriteLog(ACCESSORY_LOG_FAILURE, "Failed to register the AM callbacks");
        LogWriter_error("Failed to register the callbacks.", kRegisterCallbacks, "<>");
        return -1;
    }
    return 0;
}

int BQLColloqPlugin::unInitializeColloqPoints() {
    eventQueue.Push(std::make_shared<BQLColloqEvent>(STOP_PLUGIN_EVENT, 0));
    if (workerThread) {
        workerThread->join();  // throws boost::thread_resource_error when called from itself
    }
    if (selector) {
        selector->disconnectFromVexil();
    }
    WriteLog(ACCESSORY_LOG_MILESTONE, "Disconnected from VexilRT successfully");
    unregisterCallbacks();
    loggerHandle.store(nullptr);
    loggerAPI.store(nullptr);
    return 0;
}

void BQLColloqPlugin::unregisterCallbacks() {
    if (Accessory_CallControlAPI_v1_0_t* api = callControlAPI.load()) {
        // The table is still empty when the client refused to fill it.
        if (api->unregisterAccessoryCallbacks != nullptr &&
            api->unregisterAccessoryCallbacks(callbackTable.load()) != 0) {
            WriteLog(ACCESSORY_LOG_FAILURE, "Failed to unregister callbacks...");
            LogWriter_error("Failed to unregister the callbacks.", kUnregisterCallbacks, "<>");
        }
        callControlAPI.store(nullptr);
    }
    callbackTable.store(nullptr);
}
