#include "TimedDeviceChange.h"

#include <future>
#include <memory>
#include <thread>

#include "NamedThread.h"
#include "hostharness/HostHarness.h"
#include "hostharness/SmallStackThread.h"

namespace colloqvalidate {

namespace {

using Clock = std::chrono::steady_clock;

// Shared with the calling threads, which may outlive the wait when the plug-in hangs.
struct DeviceChange {
    hostharness::CallbackArgs args;
    std::promise<void> done;
    bool smallStackStarted = false;
    hostharness::HarnessStatus status = hostharness::HarnessStatus::Ok;
    Clock::duration inside{};
};

std::chrono::microseconds microsecondsOf(Clock::duration duration) {
    return std::chrono::duration_cast<std::chrono::microseconds>(duration);
}

}  // namespace

DeviceChangeTiming deviceChangeWithin(const std::string& identifier, std::chrono::milliseconds limit) {
    DeviceChangeTiming timing;
    auto change = std::make_shared<DeviceChange>();
    change->args.device = identifier;
    std::future<void> returned = change->done.get_future();
    const auto start = Clock::now();
    std::thread caller;
    std::string error;
    // runOnThreadWithStack joins its small-stack thread, so it is itself called from a thread the
    // validator can walk away from.
    const bool started = startNamedThread(
        caller, "validate-names",
        [change] {
            const hostharness::HarnessStatus stack =
                hostharness::runOnThreadWithStack(hostharness::kSecondaryThreadStack, [&change] {
                    hostharness::CallbackRegistry& callbacks = hostharness::HostHarness::instance().callbacks();
                    const auto enter = Clock::now();
                    change->status = callbacks.fire(hostharness::CallbackSlot::OnActiveDeviceChanged, change->args);
                    change->inside = Clock::now() - enter;
                });
            change->smallStackStarted = stack == hostharness::HarnessStatus::Ok;
            change->done.set_value();
        },
        &error);
    if (!started) {
        return timing;
    }
    if (returned.wait_for(limit) != std::future_status::ready) {
        timing.started = true;
        timing.elapsed = microsecondsOf(Clock::now() - start);
        caller.detach();
        return timing;
    }
    caller.join();
    timing.started = change->smallStackStarted;
    timing.returned = timing.started;
    timing.status = change->status;
    timing.elapsed = microsecondsOf(change->inside);
    return timing;
}

}  // namespace colloqvalidate
