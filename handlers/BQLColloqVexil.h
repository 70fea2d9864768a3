// The direct handler: drives the headset through the maker's device runtime in-process, and
// turns the runtime's reports into events on the plug-in's queue.
#pragma once

#include <cstdint>
#include <memory>
#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <string>

#include "colloq/AccessoryAPI.h"
#include "handlers/IBQLColloqHandler.h"
#include "vexilrt/VexilRTSDKLite.h"

class BQLColloqPlugin;

class BQLColloqVexil : public IBQLColloqHandler, public ICallEvents {
public:
    // Subscribed to the session manager: device attach and removal, and device-wide reports.
    class SessionManagerEvents : public ISessionManagerEvents {
    public:
        explicit SessionManagerEvents(BQLColloqVexil* owner);
        virtual bool OnCallStateChanged(const CallStateEventArgs& args) override;
        virtual bool OnDeviceStateChanged(const DeviceStateEventArgs& args) override;
        virtual ~SessionManagerEvents() = default;

    private:
        BQLColloqVexil* owner;
    };

    // The process-wide instance; never destroyed.
    static BQLColloqVexil* getInstance();

    int getVexilActiveDevicePath(std::string* path) override;
    bool performIncomingCall(ICall* call, IContact* caller) override;
    bool performOutgoingCall(ICall* call, IContact* callee) override;
    bool performTerminateCall(ICall* call) override;
    bool performAnsweredCall(ICall* call) override;
    bool performHoldCall(ICall* call) override;
    bool performResumeCall(ICall* call) override;
    bool performMuteCall(bool mute) override;
    bool performInsertCall(ICall* call, IContact* contact) override;
    void setActiveDevice(const char* pid) override;
    int connectToVexil(BQLEventQueue* queue) override;
    int disconnectFromVexil() override;
    void ProcessVexilEvent(std::shared_ptr<BQLColloqEvent> event) override;

    bool OnCallStateChanged(const CallStateEventArgs& args) override;
    bool OnCallRequest(const CallRequestEventArgs& args) override;

    void attachToDevice();
    void detachFromDevice();
    bool IsDisplayDevice();

    // Device identity: the runtime's product name of the device with exactly this path, and
    // the path of the device a client identifier names ("" when none).
    std::string GetDeviceNameFromVexilPath(std::string path);
    std::string GetPathFromColloqId(const char* colloqId);

private:
    BQLColloqVexil() = default;
    BQLColloqVexil(const BQLColloqVexil&) = delete;
    BQLColloqVexil& operator=(const BQLColloqVexil&) = delete;
    ~BQLColloqVexil() = default;

    int failConnect();
    ISessionManagerInt* internalSessionManager();

    void publishSession(ISession* registered);
    // Pushes onto the plug-in's queue when connected; drops the event otherwise.
    void pushEvent(std::shared_ptr<BQLColloqEvent> event);
    // Headset button sequences answered through the client.
    void changeDeviceFromHeadset(BQLColloqPlugin& plugin, const std::string& device);

    // The runtime's objects are published and withdrawn under connectionLock (exclusive) and
    // used under it (shared), so a reconnect never pulls one away from a command in progress.
    // Lock order: deviceLock, then connectionLock.
    ISessionManager* sessionManager = nullptr;         // guarded by connectionLock
    ISessionManagerInt* sessionManagerInt = nullptr;   // guarded by connectionLock
    ISession* session = nullptr;                       // guarded by connectionLock
    ICallCommand* callCommand = nullptr;               // guarded by connectionLock
    IDevice* activeDevice = nullptr;                   // guarded by deviceLock
    SessionManagerEvents* sessionManagerEvents = nullptr;  // guarded by connectionLock
    std::recursive_mutex deviceLock;
    std::mutex commandLock;  // serialises terminate, mute and insert
    std::shared_mutex connectionLock;
    std::atomic<BQLEventQueue*> eventQueue{nullptr};
    std::atomic<int32_t> pluginId{0};
};
