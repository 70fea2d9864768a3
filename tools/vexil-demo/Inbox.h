// What the demo softphone heard from the runtime, for the script to act on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace demo {

// The name the runtime gives its event thread.
constexpr const char* kRuntimeThreadName = "vexil-events";

struct HeardEvent {
    enum class Kind { DeviceAttached, DeviceRemoved, DeviceOther, CallState, ManagerCallState, CallRequest };
    Kind kind = Kind::DeviceOther;
    int32_t callId = 0;
    int32_t code = 0;
    std::string devicePath;
    std::string keys;
    std::string number;
    std::string alternateNumber;
    std::thread::id thread;
    std::string threadName;
};

class Inbox {
public:
    explicit Inbox(std::thread::id softphoneThread) : softphoneThread_(softphoneThread) {}

    void add(HeardEvent event);
    // Everything heard since the last take.
    std::vector<HeardEvent> take();

    std::size_t total() const;
    // Events that arrived on the softphone's own thread, or on a thread other than the
    // runtime's: the runtime must never do either.
    std::size_t offRuntimeThread() const;

private:
    const std::thread::id softphoneThread_;
    mutable std::mutex mutex_;
    std::vector<HeardEvent> pending_;
    std::size_t total_ = 0;
    std::size_t offRuntimeThread_ = 0;
};

}  // namespace demo
