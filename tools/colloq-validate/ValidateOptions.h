// The validator's command line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace colloqvalidate {

struct ValidateOptions {
    std::string pluginPath;
    std::string hubSimulatorPath;
    int cycles = 200;        // initialize/uninitialize cycles with the library loaded once
    int dlopenCycles = 50;   // dlopen/initialize/uninitialize/dlclose cycles
    int stormSeconds = 20;   // 0 leaves the storm out
    uint32_t seed = 1;
    bool hub = true;         // whether the storm starts and stops the hub simulator
    int clientThreads = 8;
    int uninitializeLimitMs = 3000;
    bool names = true;       // whether the hostile device names are handed (--no-names)
    int nameLimitMs = 2000;  // longest allowed onActiveDeviceChanged in the names phase
    // Threads of the host's environment, not the plug-in's (--host-thread, repeatable).
    std::vector<std::string> hostThreads;
    // How much resident memory may differ between the 50th and the last cycle: the allocator's
    // and the sanitizers' own bookkeeping is not the plug-in's growth.
    int64_t rssSlackKib = 1024;
    // How long the worker may take to work off what the storm queued once the storm has ended.
    int drainSeconds = 60;
    bool help = false;
};

// Reads the arguments after the program name; "" when they are good, else what is wrong.
std::string parseOptions(const std::vector<std::string>& arguments, ValidateOptions* options);

// The text of --help.
std::string usageText();

}  // namespace colloqvalidate
