#include "StandInScripts.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace e2e {

std::string currentPath() {
    const char* path = std::getenv("PATH");
    return path ? path : "/usr/bin:/bin";
}

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

bool writeScript(const std::string& file, const std::string& body) {
    {
        std::ofstream out(file);
        out << "#!/bin/sh\n" << body;
        if (!out) {
            return false;
        }
    }
    return ::chmod(file.c_str(), 0700) == 0;
}

int countLines(const std::string& file) {
    std::ifstream in(file);
    int lines = 0;
    for (std::string line; std::getline(in, line);) {
        ++lines;
    }
    return lines;
}

bool PathOverride::set(const std::string& path) {
    if (!active) {
        saved = currentPath();
        active = true;
    }
    return ::setenv("PATH", path.c_str(), 1) == 0;
}

void PathOverride::restore() {
    if (active) {
        ::setenv("PATH", saved.c_str(), 1);
        active = false;
    }
}

}  // namespace e2e
