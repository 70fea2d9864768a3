// colloq-validate: loads a plug-in of the Colloq accessory interface the way the client does and
// checks that it starts, stops and unloads cleanly, again and again and under a storm, and that
// hostile device names neither crash, stall nor disable it. One line per phase with its figures;
// the first failed check ends the run with status 1.
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "CyclePhase.h"
#include "DlopenPhase.h"
#include "NamePhase.h"
#include "PortFolder.h"
#include "StormPhase.h"
#include "ValidateOptions.h"
#include "platform/ThreadName.h"

namespace {

using namespace colloqvalidate;

constexpr int kFailed = 1;
constexpr int kBadOptions = 2;

// Prints the phase's line; true when it passed.
bool reported(const PhaseReport& report) {
    std::cout << phaseLine(report) << std::endl;
    if (report.passed()) {
        return true;
    }
    std::cerr << "colloq-validate: " << failureLine(report) << std::endl;
    if (report.pluginHung) {
        // A thread is still inside the plug-in: nothing may be unloaded or destroyed under it.
        std::cout.flush();
        std::cerr.flush();
        std::_Exit(kFailed);
    }
    return false;
}

void skipped(const char* phase, const char* option) {
    std::cout << phase << ": left out (" << option << ")" << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    platform::nameCurrentThread("colloq-validate");
    ValidateOptions options;
    options.pluginPath = BQL_DEFAULT_PLUGIN_PATH;
    options.hubSimulatorPath = BQL_DEFAULT_HUB_SIM_PATH;
    const std::string bad = parseOptions(std::vector<std::string>(argv + 1, argv + argc), &options);
    if (!bad.empty()) {
        std::cerr << "colloq-validate: " << bad << "\n" << usageText();
        return kBadOptions;
    }
    if (options.help) {
        std::cout << usageText();
        return 0;
    }
    PortFolder ports;
    const std::string noPorts = ports.choose();
    if (!noPorts.empty()) {
        std::cerr << "colloq-validate: " << noPorts << std::endl;
        return kFailed;
    }
    std::cout << "plug-in: " << options.pluginPath << "\nport folder: " << ports.path() << std::endl;
    const CycleLimits limits{std::chrono::milliseconds(options.uninitializeLimitMs), options.hostThreads};

    if (options.cycles > 0) {
        if (!reported(runCyclePhase({options.pluginPath, options.cycles, limits, options.rssSlackKib}))) {
            return kFailed;
        }
    } else {
        skipped("cycles", "--cycles 0");
    }
    if (options.dlopenCycles > 0) {
        if (!reported(runDlopenPhase({options.pluginPath, options.dlopenCycles, limits}))) {
            return kFailed;
        }
    } else {
        skipped("dlopen", "--dlopen-cycles 0");
    }
    if (options.stormSeconds > 0) {
        StormPhaseSettings storm;
        storm.pluginPath = options.pluginPath;
        storm.hubSimulatorPath = options.hubSimulatorPath;
        storm.duration = std::chrono::seconds(options.stormSeconds);
        storm.seed = options.seed;
        storm.hub = options.hub;
        storm.clientThreads = options.clientThreads;
        storm.limits = limits;
        storm.drainTimeout = std::chrono::seconds(options.drainSeconds);
        if (!reported(runStormPhase(storm))) {
            return kFailed;
        }
    } else {
        skipped("storm", "--storm-seconds 0");
    }
    if (options.names) {
        NamePhaseSettings names;
        names.pluginPath = options.pluginPath;
        names.names = hostharness::hostileDeviceNames();
        names.callbackLimit = std::chrono::milliseconds(options.nameLimitMs);
        names.limits = limits;
        if (!reported(runNamePhase(names))) {
            return kFailed;
        }
    } else {
        skipped("names", "--no-names");
    }
    std::cout << "colloq-validate: every check passed" << std::endl;
    return 0;
}
