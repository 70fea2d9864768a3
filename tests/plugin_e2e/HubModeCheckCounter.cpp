#include "HubModeCheckCounter.h"

#include <sys/stat.h>

#include <cerrno>

#include "StandInScripts.h"

namespace e2e {

bool HubCheckCounter::install(const std::string& folder) {
    const std::string path = currentPath();
    const std::string realPs = findProgram(path, "ps");
    const std::string bin = folder + "/bin";
    if (realPs.empty() || (::mkdir(bin.c_str(), 0700) != 0 && errno != EEXIST)) {
        return false;
    }
    countFile = folder + "/hub-checks";
    // The count is written once ps has ended, with ps's own status passed on to grep.
    if (!writeScript(bin + "/ps", "'" + realPs + "' \"$@\"\nstatus=$?\necho check >> '" + countFile +
                                      "'\nexit $status\n")) {
        return false;
    }
    return pathOverride.set(bin + ":" + path);
}

void HubCheckCounter::uninstall() { pathOverride.restore(); }

int HubCheckCounter::count() const { return countLines(countFile); }

}  // namespace e2e
