#include "HubIsolation.h"

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace bench {

namespace {

std::atomic<bool> hidden{false};

std::string findOnPath(const std::string& path, const std::string& program) {
    std::istringstream entries(path);
    for (std::string entry; std::getline(entries, entry, ':');) {
        const std::string candidate = entry + "/" + program;
        if (!entry.empty() && ::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return "";
}

}  // namespace

bool HubIsolation::hideHubsFromChecks(const std::string& folder) {
    const char* path = std::getenv("PATH");
    savedPath_ = path != nullptr ? path : "/usr/bin:/bin";
    const std::string realPs = findOnPath(savedPath_, "ps");
    if (realPs.empty()) {
        return false;
    }
    const std::string bin = folder + "/bin";
    std::error_code error;
    std::filesystem::create_directories(bin, error);
    const std::string wrapper = bin + "/ps";
    {
        std::ofstream script(wrapper);
        script << "#!/bin/sh\n" << realPs << " \"$@\" | grep -v 'Brimquell Hub'\n";
        if (!script) {
            return false;
        }
    }
    if (::chmod(wrapper.c_str(), 0700) != 0) {
        return false;
    }
    ::setenv("PATH", (bin + ":" + savedPath_).c_str(), 1);
    installed_ = true;
    hidden.store(true);
    return true;
}

HubIsolation::~HubIsolation() {
    if (installed_) {
        ::setenv("PATH", savedPath_.c_str(), 1);
        hidden.store(false);
    }
}

bool HubIsolation::active() { return hidden.load(); }

}  // namespace bench
