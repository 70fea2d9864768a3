// bql-bench: times the plug-in's paths through the real library, the test host, the substitute
// runtime and a hub process, each beside the lower bound of the machinery it rides on.
#include <iostream>

#include "HubIsolation.h"
#include "HubWatch.h"
#include "Options.h"
#include "Phases.h"
#include "PluginSession.h"
#include "Report.h"

namespace {

using bench::Options;

bool wants(const Options& options, const char* phase) { return options.phases.count(phase) != 0; }

// The phases that need the plug-in running in direct mode with the headset chosen.
void runDirectPhases(bench::PluginSession& session, const Options& options, bench::Results& results) {
    bench::HubIsolation isolation;
    if (options.hideOtherHubs && !isolation.hideHubsFromChecks(session.folder())) {
        std::cerr << "bql-bench: cannot hide other hubs from the plug-in's check\n";
        return;
    }
    if (!session.initialize() || !session.chooseHeadset()) {
        std::cerr << "bql-bench: the plug-in did not start: " << session.error() << "\n";
        return;
    }
    if (wants(options, "idle")) {
        std::cerr << "bql-bench: idle window of " << options.idleSeconds << " s\n";
        bench::runIdle(options, results);
    }
    if (wants(options, "direct")) {
        std::cerr << "bql-bench: " << options.events << " calls in direct mode\n";
        bench::runDirectCalls(session, options, results);
    }
    if (wants(options, "throughput")) {
        std::cerr << "bql-bench: throughput, " << options.throughputEvents << " events per producer count\n";
        bench::runThroughput(session, options, results);
    }
    if (wants(options, "names")) {
        std::cerr << "bql-bench: hostile device names, " << options.nameRounds << " rounds on a 512 KiB stack\n";
        bench::runDeviceNames(session, options, results);
    }
    session.uninitialize();
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    options.pluginPath = BQL_PLUGIN_PATH;
    options.hubPath = BQL_BENCH_HUB_PATH;
    bool exitNow = false;
    if (!bench::parseOptions(argc, argv, options, &exitNow)) {
        return 2;
    }
    if (exitNow) {
        return 0;
    }
    if (const std::string hubs = bench::describeForeignHubs(); !hubs.empty()) {
        std::cerr << "bql-bench: warning: " << hubs << "\n";
    }

    bench::Results results;
    {
        bench::PluginSession session(options.pluginPath);
        if (!session.prepare()) {
            std::cerr << "bql-bench: " << session.error() << "\n";
            return 1;
        }
        if (wants(options, "lifecycle")) {
            std::cerr << "bql-bench: " << options.lifecycleRuns << " initialize/uninitialize rounds\n";
            bench::runLifecycle(session, options, results);
        }
        if (wants(options, "idle") || wants(options, "direct") || wants(options, "throughput") ||
            wants(options, "names")) {
            runDirectPhases(session, options, results);
        }
        if (wants(options, "hub")) {
            std::cerr << "bql-bench: " << options.events << " calls in hub mode\n";
            bench::runHubPaths(session, options, results);
        }
    }

    bench::printReport(results, options, std::cout);
    if (!options.jsonPath.empty() && !bench::writeJson(results, options, options.jsonPath)) {
        std::cerr << "bql-bench: cannot write " << options.jsonPath << "\n";
        return 1;
    }
    return bench::allValid(results) ? 0 : 3;
}
