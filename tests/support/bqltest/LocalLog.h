// The local log as tests read it back: the raw lines, or each line split into the level, the
// function name the caller passed and the message.
#pragma once

#include <chrono>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "bqltest/TempDirectory.h"

namespace bqltest {

struct LocalLogEntry {
    std::string level;  // "DEBUG", "INFO" or "ERROR"
    std::string function;
    std::string message;
};

bool operator==(const LocalLogEntry& left, const LocalLogEntry& right);
void PrintTo(const LocalLogEntry& entry, std::ostream* out);

// Every line of the file; none when it does not exist.
std::vector<LocalLogEntry> readLocalLog(const std::filesystem::path& file);

// Only the entries written with this function name.
std::vector<LocalLogEntry> entriesOf(const std::vector<LocalLogEntry>& entries, const std::string& function);

// Points the local log at a file of its own in a fresh folder, under the plug-in's logger name.
class LocalLogCapture {
public:
    LocalLogCapture();
    LocalLogCapture(const LocalLogCapture&) = delete;
    LocalLogCapture& operator=(const LocalLogCapture&) = delete;

    // False when the folder or the logger could not be set up.
    bool ready() const { return ready_; }

    std::vector<std::string> lines() const;
    std::vector<LocalLogEntry> entries() const;
    std::vector<LocalLogEntry> entriesOf(const std::string& function) const;
    // Lines that contain `text` anywhere.
    int count(const std::string& text) const;
    // True once `count` lines contain `text`, false when the time-out passes first. The file
    // offers nothing to wait on, so it is looked at again in short steps.
    bool waitFor(const std::string& text, int count, std::chrono::milliseconds limit = std::chrono::seconds(10)) const;

private:
    TempDirectory folder_;
    std::filesystem::path file_;
    bool ready_ = false;
};

}  // namespace bqltest
