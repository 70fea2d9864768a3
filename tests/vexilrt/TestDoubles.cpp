#include "TestDoubles.h"

#include <utility>

#include "bqltest/ThreadNames.h"

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

namespace {

ReceivedEvent stamped(ReceivedEvent::Kind kind) {
    ReceivedEvent event;
    event.kind = kind;
    event.thread = std::this_thread::get_id();
    event.threadName = bqltest::currentThreadName();
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
    log_.put(event);
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
    log_.put(event);
    if (hook_) {
        hook_(event);
    }
}

}  // namespace vexiltest
