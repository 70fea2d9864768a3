// One initialize/uninitialize cycle of a loaded plug-in, with the checks every cycle makes:
// initialize is called, uninitialize returns within the limit, and the threads of the process
// are the ones it had before initialize (the hub pipe's receiver aside).
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "PhaseReport.h"
#include "ThreadCensus.h"
#include "hostharness/PluginLibrary.h"

namespace colloqvalidate {

// Running figures of a series of cycles.
struct CycleFigures {
    int completed = 0;
    std::chrono::milliseconds maxUninitialize{0};
    std::size_t threadsBeforeFirst = 0;
    std::size_t threadsAfterLast = 0;
    bool pipeReceiverStayed = false;
};

// What every cycle holds the plug-in to.
struct CycleLimits {
    std::chrono::milliseconds uninitialize{3000};
    // Threads of the host's environment that the plug-in's work may start and that outlive it by
    // design (see compareThreads).
    std::vector<std::string> hostThreads;
};

// Waits up to `settle` for threads that were joined to leave the system's list, then compares.
ThreadComparison threadsSettledAgainst(const std::vector<std::string>& before, const std::vector<std::string>& hostThreads,
                                       std::chrono::milliseconds settle, std::vector<std::string>* after);

class PluginCycle {
public:
    explicit PluginCycle(CycleLimits limits) : limits_(std::move(limits)) {}

    // Initializes plugin (loaded) against the harness's client, uninitializes it and checks.
    // `hung` is set when uninitialize never returned (the library must then be left alone).
    std::optional<CheckFailure> run(hostharness::PluginLibrary& plugin, CycleFigures* figures, bool* hung);

    // The time-limited uninitialize and the thread check for a plug-in initialized by the
    // caller; threadsBefore is the census taken before its initialize.
    std::optional<CheckFailure> finish(hostharness::PluginLibrary& plugin, const std::vector<std::string>& threadsBefore,
                                       CycleFigures* figures, bool* hung);

private:
    const CycleLimits limits_;
};

}  // namespace colloqvalidate
