#include "Runtime.h"

#include <type_traits>
#include <utility>

#include "vexilrt/Status.h"

namespace vexil {

Runtime& Runtime::instance() {
    // Never destroyed: softphones may call in until the process ends.
    static Runtime* const runtime = new Runtime();
    return *runtime;
}

Runtime::Runtime()
    : dispatcher_([this](const RuntimeEvent& event) { deliver(event); }, [this] { eventThreadEnded(); }),
      sessionManager_(*this),
      sessionManagerInt_(*this),
      deviceManager_(*this),
      softphoneDefaults_(*this) {}

bool Runtime::awaitSettled(bql::MutexLock& lock) {
    while (phase_ == Phase::Starting || phase_ == Phase::Stopping) {
        if (dispatcher_.onEventThread()) {
            return false;
        }
        lock.wait(phaseChanged_);
    }
    return true;
}

void Runtime::setPhase(Phase phase) {
    {
        bql::MutexLock lock(lifecycle_);
        phase_ = phase;
    }
    phaseChanged_.notify_all();
}

int32_t Runtime::start() {
    {
        bql::MutexLock lock(lifecycle_);
        if (!awaitSettled(lock)) {
            return VEXIL_E_REFUSED;
        }
        if (phase_ == Phase::Running) {
            return VEXIL_OK;
        }
        phase_ = Phase::Starting;
    }
    const int32_t generation = generation_.fetch_add(1) + 1;
    managerSubscribers_.open(generation);
    const int32_t status = dispatcher_.start();
    if (status == VEXIL_OK) {
        running_.store(true);
        setPhase(Phase::Running);
    } else {
        managerSubscribers_.close(generation);
        setPhase(Phase::Stopped);
    }
    return status;
}

void Runtime::stop() {
    {
        bql::MutexLock lock(lifecycle_);
        if (!awaitSettled(lock)) {
            return;
        }
        if (phase_ == Phase::Stopped) {
            // A shut-down from inside a delivery left its ended thread to be joined.
            dispatcher_.joinEnded();
            return;
        }
        phase_ = Phase::Stopping;
        running_.store(false);
    }
    if (const auto pluginId = sessions_.removeAny()) {
        callSubscribers_.close(*pluginId);
    }
    managerSubscribers_.close(generation_.load());
    if (dispatcher_.stop()) {
        setPhase(Phase::Stopped);
    } else {
        bql::MutexLock lock(lifecycle_);
        stoppedFromEventThread_ = true;
    }
}

void Runtime::eventThreadEnded() {
    {
        bql::MutexLock lock(lifecycle_);
        if (!stoppedFromEventThread_) {
            return;
        }
        stoppedFromEventThread_ = false;
        phase_ = Phase::Stopped;
    }
    phaseChanged_.notify_all();
}

bool Runtime::resetWhenStopped() {
    bql::MutexLock lock(lifecycle_);
    if (phase_ != Phase::Stopped) {
        return false;
    }
    dispatcher_.joinEnded();
    headsets_.clear();
    sessions_.reset();
    callStates_.clear();
    commands_.clear();
    faults_.clear();
    softphoneDefaults_.reset();
    return true;
}

bool Runtime::unregisterSession(const void* handle) {
    const auto pluginId = sessions_.removeByHandle(handle);
    if (!pluginId) {
        return false;
    }
    callSubscribers_.close(*pluginId);
    return true;
}

bool Runtime::raise(RuntimeEvent event) {
    return running() && dispatcher_.post(std::move(event));
}

void Runtime::deliver(const RuntimeEvent& event) {
    std::visit(
        [this](const auto& queued) {
            using Queued = std::decay_t<decltype(queued)>;
            if constexpr (std::is_same_v<Queued, DeviceStateEvent>) {
                managerSubscribers_.deliver(queued.generation, [&queued](ISessionManagerEvents* events) {
                    events->OnDeviceStateChanged(queued.args);
                });
            } else if constexpr (std::is_same_v<Queued, ManagerCallStateEvent>) {
                managerSubscribers_.deliver(queued.generation, [&queued](ISessionManagerEvents* events) {
                    events->OnCallStateChanged(queued.args);
                });
            } else if constexpr (std::is_same_v<Queued, SessionCallStateEvent>) {
                callSubscribers_.deliver(queued.pluginId, [&queued](ICallEvents* events) {
                    events->OnCallStateChanged(queued.args);
                });
            } else {
                static_assert(std::is_same_v<Queued, SessionCallRequestEvent>);
                callSubscribers_.deliver(queued.pluginId, [&queued](ICallEvents* events) {
                    events->OnCallRequest(queued.args);
                });
            }
        },
        event);
}

}  // namespace vexil
