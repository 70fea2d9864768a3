#include "EventDispatcher.h"

#include <pthread.h>

#include <system_error>
#include <utility>

#include "vexilrt/Status.h"

namespace vexil {

namespace {

constexpr const char* kThreadName = "vexil-events";

}  // namespace

EventDispatcher::EventDispatcher(Deliver deliver, Ended ended)
    : deliver_(std::move(deliver)), ended_(std::move(ended)) {}

int32_t EventDispatcher::start() {
    if (thread_.joinable()) {
        if (thread_.get_id() == std::this_thread::get_id()) {
            return VEXIL_E_REFUSED;
        }
        thread_.join();
    }
    {
        bql::MutexLock lock(mutex_);
        queue_.clear();
        stopRequested_ = false;
        startup_ = Startup::Pending;
    }
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        return VEXIL_E_REFUSED;
    }
    Startup outcome;
    {
        bql::MutexLock lock(mutex_);
        while (startup_ == Startup::Pending) {
            lock.wait(changed_);
        }
        outcome = startup_;
        accepting_ = outcome == Startup::Running;
    }
    if (outcome == Startup::Failed) {
        thread_.join();
        return VEXIL_E_REFUSED;
    }
    return VEXIL_OK;
}

bool EventDispatcher::stop() {
    {
        bql::MutexLock lock(mutex_);
        accepting_ = false;
        stopRequested_ = true;
        queue_.clear();
        if (threadId_ == std::this_thread::get_id()) {
            return false;
        }
    }
    changed_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
    return true;
}

void EventDispatcher::joinEnded() {
    if (thread_.joinable() && thread_.get_id() != std::this_thread::get_id()) {
        thread_.join();
    }
}

bool EventDispatcher::post(RuntimeEvent event) {
    {
        bql::MutexLock lock(mutex_);
        if (!accepting_) {
            return false;
        }
        queue_.push_back(std::move(event));
    }
    changed_.notify_all();
    return true;
}

bool EventDispatcher::waitIdle(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bql::MutexLock lock(mutex_);
    while (!queue_.empty() || delivering_) {
        if (!lock.waitUntil(changed_, deadline) && (!queue_.empty() || delivering_)) {
            return false;
        }
    }
    return true;
}

bool EventDispatcher::onEventThread() const {
    bql::MutexLock lock(mutex_);
    return threadId_ == std::this_thread::get_id();
}

void EventDispatcher::reportStartup(Startup outcome) {
    {
        bql::MutexLock lock(mutex_);
        startup_ = outcome;
        threadId_ = outcome == Startup::Running ? std::this_thread::get_id() : std::thread::id();
    }
    changed_.notify_all();
}

std::optional<RuntimeEvent> EventDispatcher::next() {
    bql::MutexLock lock(mutex_);
    delivering_ = false;
    changed_.notify_all();
    while (!stopRequested_ && queue_.empty()) {
        lock.wait(changed_);
    }
    if (stopRequested_) {
        threadId_ = std::thread::id();
        return std::nullopt;
    }
    std::optional<RuntimeEvent> event(std::move(queue_.front()));
    queue_.pop_front();
    delivering_ = true;
    return event;
}

void EventDispatcher::run() {
    if (pthread_setname_np(pthread_self(), kThreadName) != 0) {
        reportStartup(Startup::Failed);
        return;
    }
    reportStartup(Startup::Running);
    while (const std::optional<RuntimeEvent> event = next()) {
        try {
            deliver_(*event);
        } catch (...) {
            // The thread outlives any one event.
        }
    }
    ended_();
}

}  // namespace vexil
