// The plug-in's local log as the tests read it back: one entry a line, split into the level,
// the function name the caller passed and the message.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "TempDirectory.h"

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

// Points the local log at a file of its own in a fresh folder, as the plug-in's logger name.
class LocalLogCapture {
public:
    LocalLogCapture();
    LocalLogCapture(const LocalLogCapture&) = delete;
    LocalLogCapture& operator=(const LocalLogCapture&) = delete;

    // False when the folder or the logger could not be set up.
    bool ready() const { return ready_; }
    std::vector<LocalLogEntry> entries() const;
    std::vector<LocalLogEntry> entriesOf(const std::string& function) const;

private:
    TempDirectory folder_;
    bool ready_ = false;
};
