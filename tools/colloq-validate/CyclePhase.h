// Phase 1: the library loaded once, then initialize/uninitialize again and again. Besides the
// checks of every cycle, resident memory after the last cycle may not exceed that after the
// 50th by more than the slack.
#pragma once

#include <chrono>
#include <string>

#include "PhaseReport.h"
#include "PluginCycle.h"

namespace colloqvalidate {

struct CyclePhaseSettings {
    std::string pluginPath;
    int cycles = 200;
    CycleLimits limits;
    int64_t rssSlackKib = 1024;
};

// The cycle after which the memory baseline is taken.
constexpr int kMemoryBaselineCycle = 50;

PhaseReport runCyclePhase(const CyclePhaseSettings& settings);

}  // namespace colloqvalidate
