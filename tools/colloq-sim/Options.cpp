#include "Options.h"

#include <cstdlib>

namespace colloqsim {

namespace {

bool milliseconds(const std::string& text, std::chrono::milliseconds* value) {
    char* end = nullptr;
    const long long parsed = std::strtoll(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || parsed < 0 || parsed > 3600000) {
        return false;
    }
    *value = std::chrono::milliseconds(parsed);
    return true;
}

}  // namespace

bool parseOptions(const std::vector<std::string>& arguments, Options* options, std::string* error) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto value = [&](std::string* out) {
            if (i + 1 >= arguments.size()) {
                *error = argument + " needs a value";
                return false;
            }
            *out = arguments[++i];
            return true;
        };
        std::string text;
        if (argument == "-h" || argument == "--help") {
            options->help = true;
        } else if (argument == "--plugin") {
            if (!value(&options->pluginPath)) return false;
        } else if (argument == "--hub-sim") {
            if (!value(&options->hubSimulatorPath)) return false;
        } else if (argument == "--json") {
            options->style = OutputStyle::Json;
        } else if (argument == "--plain") {
            options->style = OutputStyle::Plain;
        } else if (argument == "--colour" || argument == "--color") {
            options->style = OutputStyle::Colour;
        } else if (argument == "--log") {
            options->showLog = true;
        } else if (argument == "-i" || argument == "--interactive") {
            options->interactive = true;
        } else if (argument == "--check") {
            options->checkOnly = true;
        } else if (argument == "--timeout" || argument == "--unload-timeout") {
            if (!value(&text)) return false;
            std::chrono::milliseconds* target =
                argument == "--timeout" ? &options->expectTimeout : &options->unloadTimeout;
            if (!milliseconds(text, target)) {
                *error = argument + " takes milliseconds, not \"" + text + "\"";
                return false;
            }
        } else if (!argument.empty() && argument[0] == '-') {
            *error = "unknown option " + argument + " (try --help)";
            return false;
        } else if (options->scenario.empty()) {
            options->scenario = argument;
        } else {
            *error = "one scenario a run, please (a fresh process gives each a fresh plug-in)";
            return false;
        }
    }
    if (options->scenario.empty()) {
        if (options->checkOnly) {
            *error = "--check needs a scenario file";
            return false;
        }
        options->interactive = true;
    }
    return true;
}

OutputStyle chooseStyle(const std::optional<OutputStyle>& asked, bool outputIsTerminal) {
    return asked.value_or(outputIsTerminal ? OutputStyle::Colour : OutputStyle::Plain);
}

const char* usage() {
    return R"(usage: colloq-sim [options] [SCENARIO]
Plays the Colloq client for a call-control plug-in and shows everything that crosses each
boundary. With a scenario file it runs it (exit 0 when every expectation holds, 1 when one
fails); without one it prompts for the same commands.
  --plugin PATH          the plug-in to load (default: the libBQLColloqPlugin.so built with it)
  --hub-sim PATH         the hub simulator for hub mode (default: the bql-hub-sim built with it)
  --json                 one JSON object a line instead of text
  --plain | --colour     text without or with colour (default: colour on a terminal)
  --log                  also show the lines the plug-in writes to the client's log
  --timeout MS           how long an expectation waits unless it says (default 5000)
  --unload-timeout MS    how long uninitialize may take (default 10000)
  -i, --interactive      prompt for commands after the scenario
  --check                only check the scenario file
  -h, --help             this text
Exit status: 0 fine, 1 a command or expectation failed, 2 bad options or scenario file,
3 the plug-in could not be loaded or did not return from uninitialize.)";
}

}  // namespace colloqsim
