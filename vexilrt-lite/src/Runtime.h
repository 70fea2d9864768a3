// The substitute runtime: one per process, never destroyed. It owns every part of the
// simulation and the singletons the free functions hand out, and it runs the lifecycle of
// InitVexilRuntime/ShutDownVexilRuntime.
//
// Lock discipline: each part guards its own data with its own leaf mutex; no part calls out
// while holding it. The lifecycle mutex only guards the phase and is never held while waiting
// for the event thread, so a subscriber may call any operation, InitVexilRuntime and
// ShutDownVexilRuntime included, without deadlock.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>

#include "bqlcommon/Mutex.h"

#include "CommandLog.h"
#include "DeviceManager.h"
#include "EventDispatcher.h"
#include "FaultInjector.h"
#include "HeadsetCallStates.h"
#include "HeadsetRegistry.h"
#include "RuntimeEvent.h"
#include "SessionManager.h"
#include "SessionManagerInt.h"
#include "SessionRegistry.h"
#include "SoftphoneDefaults.h"
#include "SubscriberSet.h"
#include "vexilrt/CallInterfaces.h"

namespace vexil {

class Runtime {
public:
    static Runtime& instance();

    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    int32_t start() BQL_EXCLUDES(lifecycle_);
    void stop() BQL_EXCLUDES(lifecycle_);
    bool running() const { return running_.load(); }
    // The current (or last) run, which owns the session-manager subscribers.
    int32_t generation() const { return generation_.load(); }

    // Back to a pristine state; false while the runtime is not shut down.
    bool resetWhenStopped() BQL_EXCLUDES(lifecycle_);

    // Drops the session whose handle this is, and its call subscribers.
    bool unregisterSession(const void* handle);

    // Queues an event for the event thread; false when not running.
    bool raise(RuntimeEvent event);
    EventDispatcher& dispatcher() { return dispatcher_; }

    FaultInjector& faults() { return faults_; }
    CommandLog& commands() { return commands_; }
    HeadsetRegistry& headsets() { return headsets_; }
    SessionRegistry& sessions() { return sessions_; }
    HeadsetCallStates& callStates() { return callStates_; }
    SubscriberSet<ISessionManagerEvents>& managerSubscribers() { return managerSubscribers_; }
    SubscriberSet<ICallEvents>& callSubscribers() { return callSubscribers_; }

    SessionManager& sessionManager() { return sessionManager_; }
    SessionManagerInt& sessionManagerInt() { return sessionManagerInt_; }
    DeviceManager& deviceManager() { return deviceManager_; }
    SoftphoneDefaults& softphoneDefaults() { return softphoneDefaults_; }

private:
    enum class Phase { Stopped, Starting, Running, Stopping };

    Runtime();
    ~Runtime() = delete;

    // Waits out a start or stop in progress on another thread; false when the caller is the
    // event thread, which must not wait for its own lifecycle.
    bool awaitSettled(bql::MutexLock& lock) BQL_REQUIRES(lifecycle_);
    void setPhase(Phase phase) BQL_EXCLUDES(lifecycle_);
    void deliver(const RuntimeEvent& event);
    // The event thread's last word: completes a shut-down that was started on it.
    void eventThreadEnded() BQL_EXCLUDES(lifecycle_);

    FaultInjector faults_;
    CommandLog commands_;
    HeadsetRegistry headsets_;
    SessionRegistry sessions_;
    HeadsetCallStates callStates_;
    SubscriberSet<ISessionManagerEvents> managerSubscribers_;
    SubscriberSet<ICallEvents> callSubscribers_;
    EventDispatcher dispatcher_;

    SessionManager sessionManager_;
    SessionManagerInt sessionManagerInt_;
    DeviceManager deviceManager_;
    SoftphoneDefaults softphoneDefaults_;

    std::atomic<bool> running_{false};
    std::atomic<int32_t> generation_{0};
    bql::Mutex lifecycle_;
    std::condition_variable phaseChanged_;
    Phase phase_ BQL_GUARDED_BY(lifecycle_) = Phase::Stopped;
    // A shut-down ran on the event thread, which could not join itself: the runtime counts as
    // stopped once that thread has ended.
    bool stoppedFromEventThread_ BQL_GUARDED_BY(lifecycle_) = false;
};

}  // namespace vexil
