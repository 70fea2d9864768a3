#include "Session.h"

#include <algorithm>
#include <future>
#include <thread>

#include "PortFileWatch.h"
#include "platform/HubPresence.h"
#include "platform/PortDirectory.h"
#include "platform/ThreadName.h"
#include "vexilctl/VexilControl.h"
#include "vexilrt/Events.h"

namespace colloqsim {

namespace {

using namespace std::chrono_literals;
using hostharness::HarnessStatus;

constexpr auto kHubStartTimeout = 10s;
// The plug-in looks for the hub every 2 seconds.
constexpr auto kHubSwitchTimeout = 10s;
constexpr auto kProbeTimeout = 5s;
// Each round of waiting for quiet lets one more exchange between client and plug-in finish.
constexpr int kIdleRounds = 20;

constexpr const char* kFakeDevice = "processVexilEvent(EventPtr comeEvent): Fake device, ignore events!";
// Only the proxy knows the hub's DTMF code; the direct handler has no case for it.
constexpr const char* kProxyDtmf = "case: CALL_STATE_DTMF_KEY";

}  // namespace

Session::Session(Timeline& timeline, SessionOptions options)
    : timeline_(timeline),
      options_(std::move(options)),
      host_(hostharness::HostHarness::instance()),
      client_(host_, timeline),
      headsets_(timeline),
      watcher_(timeline),
      hub_(timeline) {}

Session::~Session() {
    std::string ignored;
    if (started_ && !stopped_) {
        stop(&ignored);
    }
}

std::string Session::start() {
    if (started_) {
        return "";
    }
    host_.reset();
    std::string error;
    if (!client_.start(&error) || !watcher_.start(&error)) {
        return error;
    }
    if (hubMode_) {
        error = startHub();
        if (!error.empty()) {
            return error;
        }
    } else if (platform::isHubProcessRunning()) {
        // The plug-in's hub check looks at every process of the machine.
        timeline_.problem(
            "warning: a \"Brimquell Hub\" process is running; the plug-in will talk to it instead of the headsets");
    }
    timeline_.note("loading " + options_.pluginPath);
    const HarnessStatus loaded = plugin_->load(options_.pluginPath);
    if (loaded != HarnessStatus::Ok) {
        return "cannot load the plug-in " + options_.pluginPath + ": " + plugin_->lastError();
    }
    int result = -1;
    plugin_->initialize(host_.entryPoint(), &result);
    started_ = true;
    timeline_.note("initialize returned " + std::to_string(result));
    if (hubMode_) {
        return waitUntilProxyServes();
    }
    return "";
}

std::string Session::startHub() {
    const Headset* first = headsets_.headsets().empty() ? nullptr : &headsets_.headsets().front();
    timeline_.note("starting the hub simulator " + options_.hubSimulatorPath);
    return hub_.start(options_.hubSimulatorPath, first ? first->path : "", kHubStartTimeout);
}

std::string Session::waitUntilProxyServes() {
    const std::string folder = bql::platform::PortDirectoryPath();
    if (!waitForFile(folder, "com.bqlhub.colloq", kHubSwitchTimeout)) {
        return "the plug-in did not open its hub port in " + folder;
    }
    const Headset* first = headsets_.headsets().empty() ? nullptr : &headsets_.headsets().front();
    const std::string device = first ? first->path : "hid/vid_2f0c&pid_0a1b/probe";
    // The port is bound just before the proxy becomes the handler. A DTMF report of the hub is
    // logged only by the proxy; a report without a device, which both handlers log, closes
    // each round, so every round waits on the client's log, never on the clock.
    const auto deadline = std::chrono::steady_clock::now() + kHubSwitchTimeout;
    timeline_.note("asking whether the plug-in talks to the hub");
    while (std::chrono::steady_clock::now() < deadline) {
        const uint64_t mark = host_.journal().lastSequence();
        hub_.event("dtmf", -1, device, "255");
        hub_.event("dtmf", -1, std::string(), "");
        hostharness::LogExpectation closed;
        closed.text = kFakeDevice;
        closed.match = hostharness::TextMatch::Contains;
        closed.afterSequence = mark;
        if (host_.journal().waitForLog(closed, kProbeTimeout) != HarnessStatus::Ok) {
            return "the plug-in does not answer the hub's reports";
        }
        hostharness::LogExpectation proxy;
        proxy.text = kProxyDtmf;
        proxy.match = hostharness::TextMatch::Contains;
        proxy.afterSequence = mark;
        if (host_.journal().waitForLog(proxy, 0ms) == HarnessStatus::Ok) {
            timeline_.note("the plug-in talks to the hub");
            return "";
        }
    }
    return "the plug-in did not switch to the hub";
}

bool Session::drainWorker(std::chrono::milliseconds timeout) {
    // A report without a device makes the worker write a line no other event writes; when it
    // comes, everything queued before it has been handled.
    const uint64_t mark = host_.journal().lastSequence();
    if (hubMode_) {
        hub_.event("dtmf", -1, std::string(), "");
    } else if (vexilctl_press_button("", CALL_STATE_ACCEPT_CALL, -1, nullptr) != VEXILCTL_OK) {
        return false;
    }
    hostharness::LogExpectation handled;
    handled.text = kFakeDevice;
    handled.match = hostharness::TextMatch::Contains;
    handled.afterSequence = mark;
    return host_.journal().waitForLog(handled, timeout) == HarnessStatus::Ok;
}

bool Session::waitIdle(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    const auto left = [deadline] {
        return std::max(std::chrono::milliseconds(0), std::chrono::duration_cast<std::chrono::milliseconds>(
                                                          deadline - std::chrono::steady_clock::now()));
    };
    for (int round = 0; round < kIdleRounds; ++round) {
        const std::size_t before = timeline_.activity();
        if (!headsets_.waitIdle(left()) || (started_ && !drainWorker(left())) || !client_.waitIdle(left())) {
            return false;
        }
        watcher_.sync();
        if (timeline_.activity() == before) {
            return true;
        }
    }
    return false;
}

StopResult Session::stop(std::string* message) {
    stopped_ = true;
    StopResult result = StopResult::Stopped;
    if (plugin_->isInitialized()) {
        timeline_.note("uninitialize");
        // On a thread of its own, so that a plug-in that never returns cannot hang the host.
        auto done = std::make_shared<std::promise<int>>();
        std::future<int> returned = done->get_future();
        hostharness::PluginLibrary* plugin = plugin_.get();
        std::thread unloading([plugin, done] {
            platform::nameCurrentThread("plugin-unload");
            int value = -1;
            plugin->uninitialize(&value);
            done->set_value(value);
        });
        if (returned.wait_for(options_.unloadTimeout) != std::future_status::ready) {
            unloading.detach();
            // The library and its state stay for the thread still inside it.
            static_cast<void>(plugin_.release());
            *message = "the plug-in did not return from uninitialize within " +
                       std::to_string(options_.unloadTimeout.count()) + " ms";
            return StopResult::Hung;
        }
        unloading.join();
        timeline_.note("uninitialize returned " + std::to_string(returned.get()));
    }
    client_.waitIdle(5s);
    headsets_.waitIdle(5s);
    watcher_.stop();
    client_.stop();
    plugin_->unload();
    const std::string hubStopped = hub_.stop();
    if (!hubStopped.empty()) {
        *message = hubStopped;
        result = StopResult::Failed;
    }
    return result;
}

}  // namespace colloqsim
