// The names this process's threads carry, as the system shows them.
#pragma once

#include <pthread.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace bqltest {

// Up to 15 characters, as the system keeps them.
inline std::string currentThreadName() {
    char name[16] = {};
    ::pthread_getname_np(::pthread_self(), name, sizeof name);
    return name;
}

// How many threads of this process are named `name` right now.
inline int threadsNamed(const std::string& name) {
    int count = 0;
    std::error_code error;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", error)) {
        std::ifstream comm(task.path() / "comm");
        std::string taskName;
        if (std::getline(comm, taskName) && taskName == name) {
            ++count;
        }
    }
    return count;
}

}  // namespace bqltest
