#include "Options.h"

#include <getopt.h>

#include <iostream>
#include <sstream>

namespace bench {

namespace {

void printUsage(std::ostream& out) {
    out << "usage: bql-bench [--smoke] [--events N] [--throughput-events N] [--idle-seconds S]\n"
           "                 [--lifecycle-runs N] [--phases LIST] [--json FILE] [--hide-other-hubs]\n"
           "                 [--plugin PATH] [--hub PATH]\n"
           "  --smoke               small counts (CI): 2000 events, 3 s idle window, 2 lifecycle runs,\n"
           "                        2 rounds of the hostile device names (20 without it)\n"
           "  --events N            samples per latency path and calls for the memory figures (100000)\n"
           "  --throughput-events N events per producer count (200000)\n"
           "  --idle-seconds S      idle CPU window (60)\n"
           "  --lifecycle-runs N    initialize/uninitialize rounds (20)\n"
           "  --phases LIST         comma-separated: lifecycle,idle,direct,throughput,names,hub (all)\n"
           "  --json FILE           also write the figures as JSON\n"
           "  --hide-other-hubs     direct-mode phases: hide other hub processes on this machine from\n"
           "                        the plug-in's hub check (a ps first on PATH that leaves them out)\n";
}

bool positive(const char* text, int64_t* value) {
    char* end = nullptr;
    const long long parsed = std::strtoll(text, &end, 10);
    if (end == text || *end != '\0' || parsed <= 0) {
        return false;
    }
    *value = parsed;
    return true;
}

}  // namespace

bool parseOptions(int argc, char** argv, Options& options, bool* exitNow) {
    static const option longOptions[] = {{"smoke", no_argument, nullptr, 's'},
                                         {"events", required_argument, nullptr, 'e'},
                                         {"throughput-events", required_argument, nullptr, 't'},
                                         {"idle-seconds", required_argument, nullptr, 'i'},
                                         {"lifecycle-runs", required_argument, nullptr, 'l'},
                                         {"phases", required_argument, nullptr, 'p'},
                                         {"json", required_argument, nullptr, 'j'},
                                         {"hide-other-hubs", no_argument, nullptr, 'x'},
                                         {"plugin", required_argument, nullptr, 'P'},
                                         {"hub", required_argument, nullptr, 'H'},
                                         {"help", no_argument, nullptr, 'h'},
                                         {nullptr, 0, nullptr, 0}};
    *exitNow = false;
    bool eventsGiven = false;
    bool throughputGiven = false;
    bool idleGiven = false;
    bool runsGiven = false;
    for (int choice; (choice = getopt_long(argc, argv, "", longOptions, nullptr)) != -1;) {
        int64_t value = 0;
        switch (choice) {
        case 's': options.smoke = true; break;
        case 'e':
            if (!positive(optarg, &options.events)) {
                std::cerr << "bql-bench: --events takes a positive number\n";
                return false;
            }
            eventsGiven = true;
            break;
        case 't':
            if (!positive(optarg, &options.throughputEvents)) {
                std::cerr << "bql-bench: --throughput-events takes a positive number\n";
                return false;
            }
            throughputGiven = true;
            break;
        case 'i':
            if (!positive(optarg, &value)) {
                std::cerr << "bql-bench: --idle-seconds takes a positive number\n";
                return false;
            }
            options.idleSeconds = static_cast<double>(value);
            idleGiven = true;
            break;
        case 'l':
            if (!positive(optarg, &value)) {
                std::cerr << "bql-bench: --lifecycle-runs takes a positive number\n";
                return false;
            }
            options.lifecycleRuns = static_cast<int>(value);
            runsGiven = true;
            break;
        case 'p': {
            options.phases.clear();
            std::istringstream list(optarg);
            for (std::string phase; std::getline(list, phase, ',');) {
                if (phase != "lifecycle" && phase != "idle" && phase != "direct" && phase != "throughput" &&
                    phase != "names" && phase != "hub") {
                    std::cerr << "bql-bench: unknown phase '" << phase << "'\n";
                    return false;
                }
                options.phases.insert(phase);
            }
            break;
        }
        case 'j': options.jsonPath = optarg; break;
        case 'x': options.hideOtherHubs = true; break;
        case 'P': options.pluginPath = optarg; break;
        case 'H': options.hubPath = optarg; break;
        case 'h':
            printUsage(std::cout);
            *exitNow = true;
            return true;
        default: printUsage(std::cerr); return false;
        }
    }
    if (optind != argc) {
        std::cerr << "bql-bench: unexpected argument '" << argv[optind] << "'\n";
        printUsage(std::cerr);
        return false;
    }
    if (options.smoke) {
        options.events = eventsGiven ? options.events : 2000;
        options.throughputEvents = throughputGiven ? options.throughputEvents : 4000;
        options.idleSeconds = idleGiven ? options.idleSeconds : 3;
        options.lifecycleRuns = runsGiven ? options.lifecycleRuns : 2;
        options.nameRounds = 2;
    }
    return true;
}

}  // namespace bench
