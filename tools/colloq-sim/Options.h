// The simulator's command line.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "TimelinePrinter.h"

namespace colloqsim {

struct Options {
    std::string pluginPath;
    std::string hubSimulatorPath;
    std::optional<OutputStyle> style;  // nothing: colour on a terminal, plain otherwise
    bool showLog = false;
    bool interactive = false;
    bool checkOnly = false;
    bool help = false;
    std::chrono::milliseconds expectTimeout{5000};
    std::chrono::milliseconds unloadTimeout{10000};
    std::string scenario;  // empty: interactive
};

// False and a one-line reason for bad options. Defaults for the paths come from the caller.
bool parseOptions(const std::vector<std::string>& arguments, Options* options, std::string* error);

// The style asked for; without one, colour only when the output is a terminal, since escapes
// would litter a file or a pipe.
OutputStyle chooseStyle(const std::optional<OutputStyle>& asked, bool outputIsTerminal);

const char* usage();

}  // namespace colloqsim
