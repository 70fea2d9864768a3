// The hub simulator (bql-hub-sim) beside the plug-in: starts it with JSON output, turns every
// record it shows into a timeline line, and sends it headset events, dial requests and device
// reports. Records the plug-in sent about a call appear as the headset's, so that a scenario
// expects "headset rings 17" the same way in both modes.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <optional>
#include <string>

#include "HubProcess.h"
#include "Timeline.h"
#include "bqlcommon/Mutex.h"

namespace colloqsim {

class HubDriver {
public:
    explicit HubDriver(Timeline& timeline) : timeline_(timeline) {}
    ~HubDriver() { stop(); }
    HubDriver(const HubDriver&) = delete;
    HubDriver& operator=(const HubDriver&) = delete;

    // Starts the simulator, with activeDevice as its active device unless empty, and waits
    // until it owns the hub's port; "" when it does, else why not.
    std::string start(const std::string& program, const std::string& activeDevice, std::chrono::milliseconds timeout)
        BQL_EXCLUDES(mutex_);
    // Ends it; "" when it ended cleanly.
    std::string stop();
    bool running() const { return process_.running(); }

    // A headset event: action is one of the hub's action words, or a headset button word
    // (answer, end), which is translated. Without a device the hub names its active one; an
    // empty device is sent empty.
    std::string event(const std::string& action, int32_t callId, const std::optional<std::string>& device,
                      const std::string& keys);
    std::string dial(const std::string& number);
    std::string makeActive(const std::string& device);
    std::string send(const std::string& command);

    // The hub's action word for a headset button or hub action word; "" for unknown words.
    static std::string actionWord(const std::string& word);

private:
    void onLine(const std::string& line) BQL_EXCLUDES(mutex_);

    Timeline& timeline_;
    HubProcess process_;
    bql::Mutex mutex_;
    std::condition_variable listening_;
    bool isListening_ BQL_GUARDED_BY(mutex_) = false;
};

// The timeline line of one line the hub simulator wrote in JSON.
TimelineEvent describeHubLine(const std::string& line);

}  // namespace colloqsim
