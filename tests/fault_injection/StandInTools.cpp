#include "StandInTools.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace e2e {

namespace {

std::string findProgram(const std::string& path, const std::string& name) {
    std::istringstream folders(path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::string candidate = folder + "/" + name;
        if (!folder.empty() && ::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return std::string();
}

bool writeScript(const std::string& path, const std::string& body) {
    {
        std::ofstream out(path);
        out << "#!/bin/sh\n" << body;
        if (!out) {
            return false;
        }
    }
    return ::chmod(path.c_str(), 0700) == 0;
}

}  // namespace

bool StandInHubCheck::install(const std::string& folder, Ps ps) {
    const char* path = std::getenv("PATH");
    const std::string currentPath = path ? path : "/usr/bin:/bin";
    const std::string realGrep = findProgram(currentPath, "grep");
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
            newPath = bin + ":" + currentPath;
            break;
        case Ps::Fails:
            written = writeScript(bin + "/ps", count + "exit 1\n");
            newPath = bin + ":" + currentPath;
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
    savedPath = currentPath;
    installed = true;
    return ::setenv("PATH", newPath.c_str(), 1) == 0;
}

void StandInHubCheck::uninstall() {
    if (installed) {
        ::setenv("PATH", savedPath.c_str(), 1);
        installed = false;
    }
}

int StandInHubCheck::count() const {
    std::ifstream in(countFile);
    int lines = 0;
    for (std::string line; std::getline(in, line);) {
        ++lines;
    }
    return lines;
}

}  // namespace e2e
