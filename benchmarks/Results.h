// The figures of one run, as the phases fill them in and the report prints them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "LatencyRecorder.h"

namespace bench {

struct PathFigures {
    std::string path;
    std::string bound;
    LatencySummary measured;
    LatencySummary lowerBound;
    std::string problem;  // non-empty: the figures are not valid
};

struct ThroughputFigures {
    int producers = 0;
    int64_t events = 0;
    int64_t window = 0;             // calls in flight at most, 0 for a burst without limit
    double sustainedPerSecond = 0;  // events through to the runtime
    double barePerSecond = 0;       // the bare locked list with the same producers
    std::string problem;
};

struct IdleFigures {
    double windowSeconds = 0;
    double selfSeconds = 0;
    double childrenSeconds = 0;
    std::map<std::string, double> threadSeconds;
    std::string problem;
    bool measured = false;
};

struct LifecycleFigures {
    LatencySummary connect;
    LatencySummary uninitialize;
    std::string problem;
    bool measured = false;
};

// One group of hostile device names ("one letter", "single bytes", ...): every round of every
// name in it, and the name that took longest.
struct NameGroupFigures {
    std::string group;
    std::size_t names = 0;
    LatencySummary times;
    std::string worstLabel;
};

struct DeviceNameFigures {
    int rounds = 0;
    std::string boundIdentifier;     // the short valid name of an unlisted device, timed the same way
    LatencySummary lowerBound;
    std::vector<NameGroupFigures> groups;
    double worstUs = 0;               // over every hostile name and round
    std::string worstLabel;
    std::string problem;
    bool measured = false;
};

struct Results {
    std::vector<PathFigures> paths;
    std::vector<ThroughputFigures> throughput;
    IdleFigures idle;
    std::vector<std::pair<int64_t, int64_t>> memory;  // calls done, resident bytes
    std::string memoryProblem;
    LifecycleFigures lifecycle;
    DeviceNameFigures deviceNames;
};

}  // namespace bench
