// The direct handler's connection to the device runtime: the softphone session, its
// activation and call commands, the event subscriptions, and the active headset.
#include "handlers/BQLColloqVexil.h"

#include <string>

#include "bqlutil/LogWriter.h"
#include "handlers/VexilDeviceWalk.h"
#include "platform/RunOnce.h"

namespace {

constexpr int32_t kRefreshBeforeDeviceRead = 1;

void logConnectError(const char* stem, int32_t status) {
    const std::string text = stem + std::to_string(status);
    LogWriter_error(text.c_str(), "connectToVexil", "<>");
}

}  // namespace

BQLColloqVexil* BQLColloqVexil::getInstance() {
    static platform::OnceFlag once;
    static BQLColloqVexil* instance = nullptr;
    platform::runOnce(once, [] { instance = new BQLColloqVexil(); });
    return instance;
}

int BQLColloqVexil::connectToVexil(BQLEventQueue* queue) {
    eventQueue.store(queue);
    InitVexilRuntime();

    ISessionManager* manager = nullptr;
    ISessionManagerInt* managerInt = nullptr;
    const int32_t managerStatus = getSessionManager(&manager);
    getSessionManagerInt(&managerInt);
    {
        std::unique_lock<std::shared_mutex> guard(connectionLock);
        sessionManager = managerStatus == 0 ? manager : nullptr;
        sessionManagerInt = managerInt;
    }
    if (managerStatus != 0) {
        logConnectError("BQLColloqVexil: Failed to retrieve SessionManager instance from VexilRT. Returned error code: ",
                        managerStatus);
        return failConnect();
    }

    ISession* registered = nullptr;
    int32_t status = managerInt ? managerInt->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE,
                                                              &registered)
                                : static_cast<int32_t>(VEXIL_E_NOT_INITIALIZED);
    publishSession(registered);
    if (status != 0 || registered == nullptr) {
        logConnectError("BQLColloqVexil: Failed to register Veltra Colloq session. Returned error code: ", status);
        return failConnect();
    }

    status = registered->registerCallback(this);
    if (status != 0) {
        logConnectError("BQLColloqVexil: Failed to register session callbacks. Returned error code: ", status);
        return failConnect();
    }

    int32_t id = 0;
    registered->getPluginId(&id);
    pluginId.store(id);

    status = manager->setPluginStatus(id, VEXIL_PLUGIN_ACTIVE);
    if (status != 0) {
        logConnectError("BQLColloqVexil: Failed to activate Colloq Plugin. Returned error code: ", status);
        return failConnect();
    }

    ICallCommand* command = nullptr;
    status = registered->getCallCommand(&command);
    {
        std::unique_lock<std::shared_mutex> guard(connectionLock);
        callCommand = command;
    }
    if (status != 0 || command == nullptr) {
        logConnectError("BQLColloqVexil: Failed to get call command from session. Returned error code: ", status);
        return failConnect();
    }

    SessionManagerEvents* events = new SessionManagerEvents(this);
    {
        std::unique_lock<std::shared_mutex> guard(connectionLock);
        sessionManagerEvents = events;
    }
    status = manager->registerCallback(events);
    if (status != 0) {
        logConnectError("BQLColloqVexil: Failed to register for session manager events. Returned error code: ",
                        status);
        return failConnect();
    }

    attachToDevice();
    return 0;
}

int BQLColloqVexil::failConnect() {
    // Gives back whatever was obtained, through the virtual slot as any caller would.
    static_cast<IBQLColloqHandler*>(this)->disconnectFromVexil();
    return -1;
}

void BQLColloqVexil::publishSession(ISession* registered) {
    std::unique_lock<std::shared_mutex> guard(connectionLock);
    session = registered;
}

void BQLColloqVexil::attachToDevice() {
    std::lock_guard<std::recursive_mutex> deviceGuard(deviceLock);
    if (activeDevice != nullptr) {
        return;
    }
    ISession* current = nullptr;
    ISessionManager* manager = nullptr;
    {
        std::shared_lock<std::shared_mutex> guard(connectionLock);
        current = session;
        manager = sessionManager;
    }
    if (current == nullptr) {
        LogWriter_error("Invalid session: NULL", "attachToDevice", "<>");
        return;
    }
    IDevice* device = nullptr;
    const int32_t status = current->getActiveDevice(&device);
    if (status != 0) {
        if (device) {
            device->Release();
        }
        const std::string text = "Failed to get Active Device from SessionManager. Returned error code: " +
                                 std::to_string(status);
        LogWriter_error(text.c_str(), "attachToDevice", "<>");
        return;
    }
    activeDevice = device;
    if (!IsDisplayDevice() || manager == nullptr) {
        return;
    }
    ISoftphoneDefaults* defaults = nullptr;
    if (manager->getSoftphoneDefaults(&defaults) != 0 || defaults == nullptr) {
        return;
    }
    // Clearing first drops any other default before the plug-in claims it.
    defaults->setDefaultSoftphone(0);
    defaults->setDefaultSoftphone(pluginId.load());
    LogWriter_debug("BQLColloqVexil: set the plugin as default", "attachToDevice", "<>");
}

bool BQLColloqVexil::IsDisplayDevice() {
    std::lock_guard<std::recursive_mutex> deviceGuard(deviceLock);
    if (activeDevice == nullptr) {
        return false;
    }
    IHostCommand* hostCommand = nullptr;
    if (activeDevice->getHostCommand(&hostCommand) == 0 && hostCommand != nullptr) {
        return hostCommand->isFeatureSupported(VEXIL_FEATURE_DISPLAY);
    }
    LogWriter_error("IsDisplayDevice: getHostCommand failed.", "IsDisplayDevice", "<>");
    return false;
}

void BQLColloqVexil::detachFromDevice() {
    std::lock_guard<std::recursive_mutex> deviceGuard(deviceLock);
    if (activeDevice != nullptr) {
        activeDevice->Release();
        activeDevice = nullptr;
    }
}

int BQLColloqVexil::disconnectFromVexil() {
    ISessionManager* manager = nullptr;
    {
        std::shared_lock<std::shared_mutex> guard(connectionLock);
        manager = sessionManager;
    }
    if (manager == nullptr) {
        eventQueue.store(nullptr);
        return 0;
    }

    ISession* registered = nullptr;
    {
        // The device lock keeps a device report on the runtime's thread from attaching while
        // the session goes away.
        std::lock_guard<std::recursive_mutex> deviceGuard(deviceLock);
        if (activeDevice != nullptr) {
            activeDevice->Release();
            activeDevice = nullptr;
        }
        std::shared_lock<std::shared_mutex> guard(connectionLock);
        registered = session;
    }
    if (registered != nullptr) {
        int32_t id = 0;
        registered->getPluginId(&id);
        pluginId.store(id);
        manager->setPluginStatus(id, VEXIL_PLUGIN_INACTIVE);
        registered->unregisterCallback(this);
        ICallCommand* command = nullptr;
        {
            std::unique_lock<std::shared_mutex> guard(connectionLock);
            command = callCommand;
            callCommand = nullptr;
        }
        if (command != nullptr) {
            command->Release();
        }
        manager->unregisterSession(registered);
        {
            std::lock_guard<std::recursive_mutex> deviceGuard(deviceLock);
            std::unique_lock<std::shared_mutex> guard(connectionLock);
            session = nullptr;
        }
        registered->Release();
    }

    SessionManagerEvents* events = nullptr;
    {
        std::unique_lock<std::shared_mutex> guard(connectionLock);
        events = sessionManagerEvents;
        sessionManagerEvents = nullptr;
    }
    if (events != nullptr) {
        // Returns once no delivery to it is in progress, so it can be deleted.
        manager->unregisterCallback(events);
        delete events;
    }

    {
        std::unique_lock<std::shared_mutex> guard(connectionLock);
        sessionManager = nullptr;
    }
    ShutDownVexilRuntime();
    eventQueue.store(nullptr);
    return 0;
}

int BQLColloqVexil::getVexilActiveDevicePath(std::string* path) {
    ISessionManagerInt* managerInt = nullptr;
    {
        std::shared_lock<std::shared_mutex> guard(connectionLock);
        managerInt = sessionManagerInt;
    }
    if (managerInt == nullptr) {
        return -1;
    }
    managerInt->refreshDevices(kRefreshBeforeDeviceRead);
    std::lock_guard<std::recursive_mutex> deviceGuard(deviceLock);
    if (activeDevice == nullptr) {
        return -1;
    }
    *path = vexilwalk::readNarrow(*activeDevice, vexilwalk::DeviceText::Path);
    return 0;
}
