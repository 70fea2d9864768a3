// Command line of bql-bench.
#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace bench {

struct Options {
    bool smoke = false;
    int64_t events = 100000;          // samples per latency path, calls for the memory figures
    int64_t throughputEvents = 200000; // events per producer count
    double idleSeconds = 60;
    int lifecycleRuns = 20;
    int nameRounds = 20;              // rounds of every hostile device name
    std::set<std::string> phases{"lifecycle", "idle", "direct", "throughput", "names", "hub"};
    bool hideOtherHubs = false;       // direct-mode phases: the plug-in's hub check sees no hub
    std::string jsonPath;
    std::string pluginPath;
    std::string hubPath;
};

// False (with the reason on standard error and the usage) for bad arguments; *exitNow for --help.
bool parseOptions(int argc, char** argv, Options& options, bool* exitNow);

}  // namespace bench
