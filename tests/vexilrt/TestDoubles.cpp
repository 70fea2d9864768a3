#include "TestDoubles.h"

#include <pthread.h>

#include <filesystem>
#include <fstream>
#include <utility>

namespace vexiltest {

void Signal::raise() {
    // Notified under the lock: a waiter may destroy the signal as soon as it sees it raised.
    std::lock_guard<std::mutex> lock(mutex_);
    isRaised_ = true;
    raised_.notify_all();
}

bool Signal::isRaised() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return isRaised_;
}

bool Signal::waitFor(std::chrono::milliseconds timeout) const {
    std::unique_lock<std::mutex> lock(mutex_);
    return raised_.wait_for(lock, timeout, [this] { return isRaised_; });
}

void EventLog::add(ReceivedEvent event) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        events_.push_back(std::move(event));
    }
    added_.notify_all();
}

std::vector<ReceivedEvent> EventLog::events() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return events_;
}

std::size_t EventLog::count() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return events_.size();
}

void EventLog::clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    events_.clear();
}

bool EventLog::waitForCount(std::size_t count, std::chrono::milliseconds timeout) const {
    std::unique_lock<std::mutex> lock(mutex_);
    return added_.wait_for(lock, timeout, [this, count] { return events_.size() >= count; });
}

namespace {

ReceivedEvent stamped(ReceivedEvent::Kind kind) {
    ReceivedEvent event;
    event.kind = kind;
    event.thread = std::this_thread::get_id();
    event.threadName = currentThreadName();
    return event;
}

}  // namespace

bool RecordingCallEvents::OnCallStateChanged(const CallStateEventArgs& args) {
    ReceivedEvent event = stamped(ReceivedEvent::Kind::CallState);
    event.callState = args;
    received(std::move(event));
    return true;
}

bool RecordingCallEvents::OnCallRequest(const CallRequestEventArgs& args) {
    ReceivedEvent event = stamped(ReceivedEvent::Kind::CallRequest);
    event.callRequest = args;
    received(std::move(event));
    return true;
}

void RecordingCallEvents::received(ReceivedEvent event) {
    log_.add(event);
    if (hook_) {
        hook_(event);
    }
}

bool RecordingManagerEvents::OnCallStateChanged(const CallStateEventArgs& args) {
    ReceivedEvent event = stamped(ReceivedEvent::Kind::ManagerCallState);
    event.callState = args;
    received(std::move(event));
    return true;
}

bool RecordingManagerEvents::OnDeviceStateChanged(const DeviceStateEventArgs& args) {
    ReceivedEvent event = stamped(ReceivedEvent::Kind::DeviceState);
    event.deviceState = args;
    received(std::move(event));
    return true;
}

void RecordingManagerEvents::received(ReceivedEvent event) {
    log_.add(event);
    if (hook_) {
        hook_(event);
    }
}

std::string currentThreadName() {
    char name[32] = {};
    pthread_getname_np(pthread_self(), name, sizeof name);
    return name;
}

int threadsNamed(const std::string& name) {
    int found = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream comm(task.path() / "comm");
        std::string taskName;
        if (std::getline(comm, taskName) && taskName == name) {
            ++found;
        }
    }
    return found;
}

}  // namespace vexiltest
