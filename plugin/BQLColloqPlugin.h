// The process-wide plug-in object: binds to the client, owns the event queue and the call
// list, runs the worker and the start-up thread, and keeps the client's active audio device.
#pragma once

#include <atomic>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/once.hpp>
#include <boost/thread/recursive_mutex.hpp>
#include <boost/thread/thread.hpp>

#include "bqlcommon/Mutex.h"
#include "calls/BQLColloqCall.h"
#include "calls/BQLColloqEvent.h"
#include "calls/safeQueue.h"
#include "colloq/AccessoryAPI.h"
#include "handlers/BQLHandlerSelector.h"

// Deleted through Release(), never through a plain delete by its users.
class IDisposable {
public:
    virtual void Release() = 0;

protected:
    virtual ~IDisposable() = default;
};

class BQLColloqPlugin : public IDisposable {
public:
    using CallPtr = std::shared_ptr<BQLColloqCall>;
    using EventPtr = std::shared_ptr<BQLColloqEvent>;

    static constexpr const char* kPluginVersion = "3.8.51535.41614";

    // The instance, created on first use after each Release.
    static BQLColloqPlugin* getInstance();
    // The instance if one exists; for threads that must not create one (runtime and pipe
    // threads reporting after the plug-in has been released).
    static BQLColloqPlugin* existingInstance() { return pInstance.load(); }

    // Lifecycle, on the client's thread.
    int Start(accessoryAPIEntryPoint_t entry);
    int Stop();
    void Release() override;

    // Client binding.
    int initializeColloqPoints(accessoryAPIEntryPoint_t entry);
    int registerCallbacks();
    int unInitializeColloqPoints();
    void unregisterCallbacks();
    Accessory_CallControlAPI_v1_0_t* getCallControlAPI() const { return callControlAPI.load(); }

    // Logging: the local log is configured once per instance; WriteLog goes to the client only.
    static void InitializeLog();
    void WriteLog(Accessory_LogMsg_Severity severity, const char* format, ...);

    // Whether the client can switch its audio device at our request.
    int checkColloqVersion();
    // The same check against any version text (the plug-in always passes its own).
    int checkVersionSupportsDeviceChange(const char* version);
    bool hostCanChangeDevice() const { return canChangeDevice.load(); }

    // Call list and active device.
    CallPtr GetCallById(int id);
    // Read under the call list's own lock.
    std::size_t callCount() { return callQueue.Size(); }
    void loadCalls();
    void removeCalls();
    bool hasBrimquellDevices();
    void updatePluginState();
    void getDevicePID(std::string path);
    int changeVexilActiveDevice(const char* colloqDeviceId);
    short changeActiveColloqDevice(std::string path);
    int TerminateAllCalls();
    short insertCallIntoCM();
    void setColloqForeground();

    // Active-device members: written under the device mutex, read as copies under it.
    std::string getActiveDevicePath();
    std::string getActiveDevicePid();
    bool isActiveDeviceBrimquell() const { return activeDeviceIsBrimquell.load(); }
    void setActiveDevicePath(const std::string& path);
    // Takes path as the active device and derives its product id, in one step.
    void adoptActiveDevicePath(const std::string& path);

    bool getIsMuted() const { return isMuted.load(); }
    void setIsMuted(bool muted) { isMuted.exchange(muted); }

    BQLEventQueue& getEventQueue() { return eventQueue; }
    BQLHandlerSelector* getSelector() const { return selector.get(); }

    // True while at least one of the maker's headsets is present.
    static std::atomic<bool> isPluginActive;

    // The worker thread's body.
    void pluginThread();

    // The client's callbacks.
    static int onAudioMute();
    static int onAudioUnmute();
    static int onOffHook(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onReorder(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onBusy(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onIncoming(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onCallWaiting(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onConnected(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onHold(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onOnHook(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onRemoteAlerting(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t** calls, int count);
    static int onVolumeChanged(Accessory_AudioType type, int volume);
    static int onActiveDeviceChanged(Accessory_AccessoryType kind, const char* device, const char* second);
    static int setDeviceMicrophoneVolume(const char* device, int volume);
    static int setDeviceSpeakerVolume(const char* device, int volume);
    static int onPhoneRegistrationStatusChanged(Accessory_PhoneConnectionStatus status);
    static int notifySubscriberNumbers(Accessory_Subscriber_Info** numbers, int count);

protected:
    ~BQLColloqPlugin() override;

private:
    BQLColloqPlugin();
    // The worker's handling of each kind of event; false ends the worker.
    bool handleEvent(const EventPtr& event);
    void renderOutgoingCall(int callId);
    void renderIncomingCall(int callId);
    void renderConnectedCall(int callId);
    void renderTerminatedCall(int callId);
    void renderHeldCall(int callId);
    void routeHeadsetEvent(const EventPtr& event);
    bool placeDialledCall(const BQLColloqEvent& event);

    static void createInstance();
    // The start-up thread: every two seconds, the hub proxy while the hub runs, else the
    // direct handler. The entry point is carried, not used.
    void CheckForVexilInstance(std::shared_ptr<BQLHandlerSelector> activeSelector,
                               accessoryAPIEntryPoint_t entry);
    void waitForNextHubCheck();
    void scheduleHubReconnect(std::shared_ptr<BQLHandlerSelector> activeSelector);

    // Callback helpers: records the call unless its id is already tracked, and queues events.
    void recordCall(Accessory_CallInfo_v1_0_t& info, BQLColloqCallState state);
    bool trackCallId(int id);
    void forgetCallId(int id);
    void queueEvent(BQLColloqEventType type, int callId);

    // Ids of the calls in the call list: concurrent client threads and the worker never race on it.
    bql::Mutex knownCallIdsLock;
    std::set<int> knownCallIds BQL_GUARDED_BY(knownCallIdsLock);
    std::atomic<Accessory_CallControlAPI_v1_0_t*> callControlAPI{nullptr};
    std::atomic<Accessory_LoggerAPI_v1_0_t*> loggerAPI{nullptr};
    std::atomic<ACCLogger_t*> loggerHandle{nullptr};
    std::atomic<Accessory_CallControlCallback_v1_0_t*> callbackTable{nullptr};
    BQLEventQueue eventQueue;
    safeQueue<CallPtr> callQueue;
    std::atomic<bool> isMuted{false};
    std::string activeDevicePath;  // guarded by deviceMutex
    std::string activeDevicePid;   // guarded by deviceMutex
    std::atomic<bool> activeDeviceIsBrimquell{false};
    std::shared_ptr<boost::thread> workerThread;
    boost::recursive_mutex deviceMutex;
    // Points at kPluginVersion once the client is bound, "" before.
    std::atomic<const char*> pluginVersion{""};
    std::atomic<bool> canChangeDevice{false};
    boost::thread startupThread;
    // Start-up threads of earlier Start calls on this instance, joined by Stop.
    std::vector<boost::thread> previousStartupThreads;
    // Wakes the start-up thread out of its wait between two hub checks when stopping.
    boost::mutex hubCheckMutex;
    boost::condition_variable hubCheckWake;
    // Shared with reconnect work scheduled on the main queue, which may outlive this object.
    std::shared_ptr<BQLHandlerSelector> selector;
    std::atomic<bool> running{false};
    // The reconnect gate's generation of this instance's current start (0 before Start).
    std::atomic<std::uint64_t> reconnectGeneration{0};

    static std::atomic<BQLColloqPlugin*> pInstance;
    static boost::once_flag flagSingleton;
};
