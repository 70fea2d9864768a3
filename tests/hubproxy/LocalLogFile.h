// Points the local log at a file of its own in `directory` and reads it back.
#pragma once

#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "bqlutil/LogWriter.h"

class LocalLogFile {
public:
    explicit LocalLogFile(const std::string& directory) : path_(directory + "/Vexil_Colloq.log") {
        initialised_ = LogWriter_init((directory + "/absent.log4cxx").c_str(), directory.c_str(), "Vexil_Colloq") == 0;
    }

    bool initialised() const { return initialised_; }

    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        std::ifstream file(path_);
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    // Lines that contain `text` anywhere.
    int Count(const std::string& text) const {
        int count = 0;
        for (const std::string& line : Lines()) {
            if (line.find(text) != std::string::npos) {
                ++count;
            }
        }
        return count;
    }

    // True once `count` lines contain `text`, false when the time-out passes first. The file
    // offers nothing to wait on, so it is looked at again in short steps.
    bool WaitFor(const std::string& text, int count,
                 std::chrono::milliseconds limit = std::chrono::seconds(10)) const {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (Count(text) < count) {
            if (std::chrono::steady_clock::now() >= deadline) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return true;
    }

private:
    std::string path_;
    bool initialised_ = false;
};

inline bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}
