// One run of the simulator: the plug-in loaded the way the client loads it, the model client
// behind the harness's tables, the runtime's headsets and, in hub mode, the hub simulator.
// Driven from one thread (the scenario's or the prompt's).
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "HeadsetDriver.h"
#include "HubDriver.h"
#include "ModelClient.h"
#include "RuntimeWatcher.h"
#include "Timeline.h"
#include "hostharness/PluginLibrary.h"

namespace colloqsim {

struct SessionOptions {
    std::string pluginPath;
    std::string hubSimulatorPath;
    std::chrono::milliseconds unloadTimeout{10000};
};

enum class StopResult {
    Stopped,
    Failed,  // something went wrong; the message says what
    Hung,    // uninitialize did not return: the process must end without waiting for it
};

class Session {
public:
    Session(Timeline& timeline, SessionOptions options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Only before start.
    void setHubMode(bool hubMode) { hubMode_ = hubMode; }
    bool hubMode() const { return hubMode_; }

    // Loads and initializes the plug-in (starting the hub simulator first in hub mode); "" when
    // it runs, else why not.
    std::string start();
    bool started() const { return started_; }
    // Uninitializes and unloads the plug-in within the time-out, then stops the helpers.
    StopResult stop(std::string* message);

    ModelClient& client() { return client_; }
    HeadsetDriver& headsets() { return headsets_; }
    HubDriver& hub() { return hub_; }
    // Waits until nothing moves any more: the runtime has delivered its events, the plug-in's
    // worker has handled what was queued, the client has reacted, and a further round shows
    // nothing new.
    bool waitIdle(std::chrono::milliseconds timeout);

private:
    std::string startHub();
    std::string waitUntilProxyServes();
    // Returns once the plug-in's worker has handled everything queued before.
    bool drainWorker(std::chrono::milliseconds timeout);

    Timeline& timeline_;
    SessionOptions options_;
    bool hubMode_ = false;
    bool started_ = false;
    bool stopped_ = false;
    hostharness::HostHarness& host_;
    std::unique_ptr<hostharness::PluginLibrary> plugin_ = std::make_unique<hostharness::PluginLibrary>();
    ModelClient client_;
    HeadsetDriver headsets_;
    RuntimeWatcher watcher_;
    HubDriver hub_;
};

}  // namespace colloqsim
