// bql-hub-sim: plays the maker's hub application for tests, demos and users without the real hub.
#include <getopt.h>
#include <sys/prctl.h>

#include <csignal>
#include <deque>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>

#include "AsioEvents.h"
#include "CommandFeed.h"
#include "HubSimulator.h"

namespace {

// The name the plug-in looks for in the process table.
constexpr const char* kProcessName = "Brimquell Hub";

struct Options {
    bool json = false;
    bool readInput = true;
    bool help = false;
    std::optional<std::string> device;
    std::deque<std::string> commands;
};

void PrintUsage(std::ostream& out) {
    out << "usage: bql-hub-sim [--json] [--device PATH] [-e COMMAND]... [-f SCRIPT] [--no-stdin]\n"
           "  -j, --json          print records and notices as JSON lines\n"
           "  -d, --device PATH   start with PATH as the active device\n"
           "  -e, --command CMD   run CMD first (repeatable, in order)\n"
           "  -f, --file SCRIPT   then run the commands of SCRIPT, one a line\n"
           "  -n, --no-stdin      do not read standard input; serve until SIGINT, SIGTERM or SIGHUP\n"
           "Without -n, commands are read from standard input after the others, until its end.\n"
           "Type 'help' for the commands.\n";
}

bool ReadScript(const std::string& path, std::deque<std::string>& commands) {
    std::ifstream script(path);
    if (!script) {
        return false;
    }
    for (std::string line; std::getline(script, line);) {
        commands.push_back(line);
    }
    return true;
}

bool ParseOptions(int argc, char** argv, Options& options) {
    static const option longOptions[] = {{"json", no_argument, nullptr, 'j'},
                                         {"device", required_argument, nullptr, 'd'},
                                         {"command", required_argument, nullptr, 'e'},
                                         {"file", required_argument, nullptr, 'f'},
                                         {"no-stdin", no_argument, nullptr, 'n'},
                                         {"help", no_argument, nullptr, 'h'},
                                         {nullptr, 0, nullptr, 0}};
    std::optional<std::string> script;
    for (int choice; (choice = getopt_long(argc, argv, "jd:e:f:nh", longOptions, nullptr)) != -1;) {
        switch (choice) {
        case 'j': options.json = true; break;
        case 'd': options.device = optarg; break;
        case 'e': options.commands.push_back(optarg); break;
        case 'f': script = optarg; break;
        case 'n': options.readInput = false; break;
        case 'h': options.help = true; break;
        default: return false;
        }
    }
    if (optind != argc) {
        std::cerr << "bql-hub-sim: unexpected argument '" << argv[optind] << "'\n";
        return false;
    }
    if (script && !ReadScript(*script, options.commands)) {
        std::cerr << "bql-hub-sim: cannot read script " << *script << "\n";
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    ::prctl(PR_SET_NAME, kProcessName, 0, 0, 0);
    // A reader that goes away must not kill the hub; its output is simply lost.
    std::signal(SIGPIPE, SIG_IGN);

    Options options;
    if (!ParseOptions(argc, argv, options)) {
        PrintUsage(std::cerr);
        return 2;
    }
    if (options.help) {
        PrintUsage(std::cout);
        return 0;
    }

    boost::asio::io_context events;
    HubSimulator simulator(events, options.json, options.device, std::cout, std::cerr);
    // Signals are caught from here on, before the port is announced.
    CommandFeed feed(events, simulator, std::move(options.commands), options.readInput);
    if (!simulator.Start()) {
        return 1;
    }
    feed.Start();
    events.run();
    simulator.Stop();
    return 0;
}
