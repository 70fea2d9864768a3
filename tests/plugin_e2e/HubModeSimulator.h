// The hub simulator (bql-hub-sim) as a second process beside the plug-in: the test writes its
// commands and reads the records it shows, one JSON line each, always with a deadline.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ChildProcess.h"

namespace e2e {

// One record as the simulator shows it; texts are UTF-8.
struct HubRecord {
    bool received = false;  // from the plug-in; false for one the simulator sent
    int64_t messageType = -1;
    int64_t callState = -1;
    int64_t deviceAction = -1;
    int64_t callId = 0;
    std::string devicePath;
    std::string contactName;
    std::string phoneNumber;
    std::string extraText;
    std::string dtmfKeys;
    int64_t productId = -1;
};

// Describes a record in a failure message.
std::string describe(const HubRecord& record);

class HubSimulatorProcess {
public:
    using Match = std::function<bool(const HubRecord&)>;

    // Starts the simulator with JSON output in the test's environment (its port folder) and
    // waits until it owns the hub's port. False when it does not come up.
    bool start();
    bool running() const { return child != nullptr; }
    // Ends it with SIGTERM and reaps it, so that the process table no longer shows it. True
    // when it ended cleanly; also true when it was not running.
    bool stop();

    bool command(const std::string& line);

    // The oldest record from the plug-in not yet taken; nothing when none comes in time.
    std::optional<HubRecord> nextReceived(std::chrono::milliseconds limit);
    // The oldest record from the plug-in that matches and was not yet taken. Records passed
    // over stay for nextReceived.
    std::optional<HubRecord> receivedMatching(const Match& match, std::chrono::milliseconds limit);
    // The oldest record the simulator sent that matches and was not yet taken.
    std::optional<HubRecord> sentMatching(const Match& match, std::chrono::milliseconds limit);

private:
    struct Shown {
        HubRecord record;
        bool taken = false;
    };

    std::optional<HubRecord> take(const Match& match, std::chrono::milliseconds limit);
    // Reads one more line into `shown`; false at the deadline or the end of the output.
    bool readOne(std::chrono::steady_clock::time_point deadline);

    std::unique_ptr<ChildProcess> child;
    std::vector<Shown> shown;
};

}  // namespace e2e
