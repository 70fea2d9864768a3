// Finds the processes the plug-in's hub check would find: those named "Brimquell Hub". A hub the
// benchmark did not start switches the plug-in to hub mode behind its back, so every phase that
// expects direct mode looks for one before and after it runs.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace bench {

// Every hub process on this machine except `own` (-1 for none).
std::vector<pid_t> foreignHubs(pid_t own = -1);
// "" when there is none or they are hidden from the plug-in's check (HubIsolation), else a
// sentence naming them.
std::string describeForeignHubs(pid_t own = -1);

}  // namespace bench
