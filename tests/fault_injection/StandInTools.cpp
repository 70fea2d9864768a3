#include "StandInTools.h"

#include <sys/stat.h>

#include <cerrno>

namespace e2e {

bool StandInHubCheck::install(const std::string& folder, Ps ps) {
    const std::string path = currentPath();
    const std::string realGrep = findProgram(path, "grep");
    const std::string bin = folder + "/standin";
    if (realGrep.empty() || (::mkdir(bin.c_str(), 0700) != 0 && errno != EEXIST)) {
        return false;
    }
    countFile = folder + "/standin-checks";
    const std::string count = "echo check >> '" + countFile + "'\n";
    bool written = false;
    std::string newPath;
    switch (ps) {
        case Ps::SaysTheHubRuns:
            written = writeScript(bin + "/ps", count + "echo 'Brimquell Hub'\n");
            newPath = bin + ":" + path;
            break;
        case Ps::Fails:
            written = writeScript(bin + "/ps", count + "exit 1\n");
            newPath = bin + ":" + path;
            break;
        case Ps::Missing:
            // The shell finds no ps; grep still runs, counts the check and reads nothing.
            written = writeScript(bin + "/grep", count + "exec '" + realGrep + "' \"$@\"\n");
            newPath = bin;
            break;
    }
    if (!written) {
        return false;
    }
    return pathOverride.set(newPath);
}

void StandInHubCheck::uninstall() { pathOverride.restore(); }

int StandInHubCheck::count() const { return countLines(countFile); }

}  // namespace e2e
