// Keeps other people's hubs on a shared machine from switching the plug-in to hub mode during a
// direct-mode phase: a `ps` first on PATH that leaves "Brimquell Hub" lines out, so the plug-in's
// own check (ps -Ac | grep 'Brimquell Hub', run through the shell) finds none. Only the check's
// view changes; the plug-in runs it as always.
#pragma once

#include <string>

namespace bench {

class HubIsolation {
public:
    HubIsolation() = default;
    // Restores PATH.
    ~HubIsolation();
    HubIsolation(const HubIsolation&) = delete;
    HubIsolation& operator=(const HubIsolation&) = delete;

    // Puts the filtering ps into `folder`/bin and that first on PATH. Call it before the plug-in's
    // threads run: PATH changes for the whole process. False when no ps was found or the file
    // could not be written.
    bool hideHubsFromChecks(const std::string& folder);
    // Whether hubs are hidden from the plug-in's check right now.
    static bool active();

private:
    std::string savedPath_;
    bool installed_ = false;
};

}  // namespace bench
