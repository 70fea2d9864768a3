// Counts the plug-in's looks for the hub process. The plug-in runs "ps" through the shell, so a
// "ps" placed first in PATH that runs the real one and then notes the run in a file shows how
// many checks have been made: a test can wait for the next check instead of guessing its time.
#pragma once

#include <string>

#include "StandInScripts.h"

namespace e2e {

class HubCheckCounter {
public:
    // Writes the counting "ps" into `folder`/bin and puts that folder first in PATH. False when
    // no real ps is found or the script cannot be written; PATH is then left alone.
    bool install(const std::string& folder);
    // Puts PATH back as it was; nothing when not installed.
    void uninstall();

    // The checks whose ps has ended so far. A check switches the handler only after its ps has
    // ended, so a count of n + 1 means check n has made its choice.
    int count() const;

private:
    std::string countFile;
    PathOverride pathOverride;
};

}  // namespace e2e
