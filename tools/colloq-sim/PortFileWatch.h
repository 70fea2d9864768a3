// Waits, without polling, until a file appears in a folder (inotify). The plug-in shows that it
// has switched to the hub by binding its own port file next to the hub's.
#pragma once

#include <chrono>
#include <string>

namespace colloqsim {

// True once folder/name exists, false when the time-out passes or the folder cannot be watched.
bool waitForFile(const std::string& folder, const std::string& name, std::chrono::milliseconds timeout);

}  // namespace colloqsim
