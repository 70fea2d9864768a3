#include "TimedUninitialize.h"

#include <future>
#include <memory>
#include <string>
#include <thread>

#include "NamedThread.h"

namespace colloqvalidate {

UninitializeTiming uninitializeWithin(hostharness::PluginLibrary& plugin, std::chrono::milliseconds limit) {
    UninitializeTiming timing;
    // Shared with the thread, which may outlive this call when the plug-in hangs.
    auto done = std::make_shared<std::promise<void>>();
    std::future<void> returned = done->get_future();
    hostharness::PluginLibrary* library = &plugin;
    const auto start = std::chrono::steady_clock::now();
    std::thread caller;
    std::string error;
    if (!startNamedThread(
            caller, "validate-uninit",
            [library, done] {
                library->uninitialize();
                done->set_value();
            },
            &error)) {
        return timing;
    }
    timing.started = true;
    const bool inTime = returned.wait_for(limit) == std::future_status::ready;
    timing.elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    if (!inTime) {
        caller.detach();
        return timing;
    }
    caller.join();
    timing.returned = true;
    return timing;
}

}  // namespace colloqvalidate
