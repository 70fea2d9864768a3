// colloq-sim: plays the Colloq client for a call-control plug-in, drives simulated headsets or
// the hub simulator, and prints the timeline of everything that crosses each boundary.
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>

#include "InteractivePrompt.h"
#include "Options.h"
#include "ScenarioParser.h"
#include "ScenarioRunner.h"
#include "Session.h"
#include "Timeline.h"

namespace {

using namespace colloqsim;

constexpr int kFine = 0;
constexpr int kFailed = 1;
constexpr int kBadInput = 2;
constexpr int kPluginTrouble = 3;

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

int simulate(const Options& options, const Scenario& scenario) {
    Timeline timeline(makePrinter(chooseStyle(options.style, ::isatty(STDOUT_FILENO) != 0), std::cout), options.showLog);
    SessionOptions sessionOptions;
    sessionOptions.pluginPath = options.pluginPath;
    sessionOptions.hubSimulatorPath = options.hubSimulatorPath;
    sessionOptions.unloadTimeout = options.unloadTimeout;
    Session session(timeline, sessionOptions);
    ScenarioRunner runner(session, timeline, options.expectTimeout);

    int status = kFine;
    if (!scenario.file.empty()) {
        const RunResult result = runner.run(scenario);
        if (!result.ok) {
            timeline.problem(result.message);
            std::cerr << "colloq-sim: " << firstLine(result.message) << '\n';
            status = result.startFailed ? kPluginTrouble : kFailed;
        } else {
            timeline.note("scenario passed: " + scenario.file);
        }
    }
    if (options.interactive && status == kFine) {
        InteractivePrompt prompt(runner, timeline, std::cin, ::isatty(STDIN_FILENO) != 0);
        if (!prompt.run()) {
            status = kFailed;
        }
    }
    std::string message;
    switch (session.stop(&message)) {
    case StopResult::Stopped: break;
    case StopResult::Failed:
        std::cerr << "colloq-sim: " << message << '\n';
        status = status == kFine ? kFailed : status;
        break;
    case StopResult::Hung:
        std::cerr << "colloq-sim: " << message << '\n' << std::flush;
        // A thread is still inside the plug-in: nothing may be torn down under it.
        std::_Exit(kPluginTrouble);
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    // A hub simulator that ended early must not take the simulator with it on the next write.
    std::signal(SIGPIPE, SIG_IGN);
    // The timeline owns standard output and prints from several threads under its lock; a
    // message on standard error must not flush it from outside that lock.
    std::cerr.tie(nullptr);
    Options options;
    options.pluginPath = BQL_DEFAULT_PLUGIN_PATH;
    options.hubSimulatorPath = BQL_DEFAULT_HUB_SIM_PATH;
    std::string error;
    if (!parseOptions(std::vector<std::string>(argv + 1, argv + argc), &options, &error)) {
        std::cerr << "colloq-sim: " << error << '\n';
        return kBadInput;
    }
    if (options.help) {
        std::cout << usage() << '\n';
        return kFine;
    }
    Scenario scenario;
    if (!options.scenario.empty()) {
        const std::vector<std::string> errors = parseScenarioFile(options.scenario, &scenario);
        for (const std::string& problem : errors) {
            std::cerr << "colloq-sim: " << problem << '\n';
        }
        if (!errors.empty()) {
            return kBadInput;
        }
        if (options.checkOnly) {
            std::cout << options.scenario << ": " << scenario.commands.size() << " commands, fine\n";
            return kFine;
        }
    }
    try {
        return simulate(options, scenario);
    } catch (const std::exception& failure) {
        std::cerr << "colloq-sim: " << failure.what() << '\n';
        return kPluginTrouble;
    }
}
