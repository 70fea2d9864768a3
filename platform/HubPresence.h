// Whether the maker's hub application is running.
#pragma once

namespace platform {

// The command the plug-in runs to look for the hub; the two blanks after grep are kept.
constexpr const char* kHubProcessCheckCommand = "ps -Ac | grep  'Brimquell Hub' > /dev/null";

// Runs the command through system(); only a zero result means the hub runs.
bool isHubProcessRunning();

}  // namespace platform
