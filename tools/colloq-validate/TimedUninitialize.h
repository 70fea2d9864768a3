// Calls a plug-in's uninitialize on a thread of its own and waits for it at most a limit, so
// that a plug-in that never returns cannot hang the validator.
#pragma once

#include <chrono>

#include "hostharness/PluginLibrary.h"

namespace colloqvalidate {

struct UninitializeTiming {
    bool started = false;   // false when no thread could be started for it (nothing was called)
    bool returned = false;  // false: it is still running and the library must be left alone
    std::chrono::milliseconds elapsed{0};
};

UninitializeTiming uninitializeWithin(hostharness::PluginLibrary& plugin, std::chrono::milliseconds limit);

}  // namespace colloqvalidate
