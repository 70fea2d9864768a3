// Stand-ins for the tools the plug-in's hub check runs through the shell ("ps" piped into
// "grep"): a ps that claims the hub runs, a ps that fails, or no ps at all. Each counts the checks
// it sees, so a test can wait for the next check instead of guessing its time.
#pragma once

#include <string>

#include "StandInScripts.h"

namespace e2e {

class StandInHubCheck {
public:
    enum class Ps {
        SaysTheHubRuns,  // prints the hub's process name and succeeds
        Fails,           // prints nothing and fails
        Missing,         // PATH holds no ps at all, only a counting grep
    };

    // Writes the stand-ins into `folder`/standin and makes PATH lead there (only there for
    // Missing). False when grep cannot be found or a script cannot be written; PATH is then
    // left alone.
    bool install(const std::string& folder, Ps ps);
    // Puts PATH back as it was; nothing when not installed.
    void uninstall();
    // The checks that have run so far.
    int count() const;

private:
    std::string countFile;
    PathOverride pathOverride;
};

}  // namespace e2e
