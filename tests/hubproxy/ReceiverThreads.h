// Counts this process's threads that carry the pipe receiver's name.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

inline int ReceiverThreadCount() {
    int count = 0;
    std::error_code error;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", error)) {
        std::ifstream comm(task.path() / "comm");
        std::string name;
        if (std::getline(comm, name) && name == "bql-pipe-rx") {
            ++count;
        }
    }
    return count;
}
