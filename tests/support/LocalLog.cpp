#include "bqltest/LocalLog.h"

#include <algorithm>
#include <iterator>
#include <thread>

#include "bqltest/FileLines.h"
#include "bqlutil/LogWriter.h"

namespace bqltest {

namespace {

// Lines read "<date> <time> <level padded> [<thread>] <function> <location> <message>", and
// the plug-in always passes "<>" as the location.
constexpr const char* kLocationSeparator = " <> ";
constexpr const char* kLoggerName = "Vexil_Colloq";

LocalLogEntry parseLine(const std::string& line) {
    LocalLogEntry entry;
    const std::string::size_type afterDate = line.find(' ');
    const std::string::size_type afterTime = line.find(' ', afterDate + 1);
    const std::string::size_type threadOpen = line.find(" [", afterTime);
    const std::string::size_type threadClose = line.find("] ", threadOpen);
    const std::string::size_type location = line.find(kLocationSeparator, threadClose);
    if (afterTime == std::string::npos || threadOpen == std::string::npos || threadClose == std::string::npos ||
        location == std::string::npos) {
        entry.message = line;  // kept whole, so a test that looks for it sees what was there
        return entry;
    }
    entry.level = line.substr(afterTime + 1, threadOpen - afterTime - 1);
    entry.level.erase(entry.level.find_last_not_of(' ') + 1);
    entry.function = line.substr(threadClose + 2, location - threadClose - 2);
    entry.message = line.substr(location + std::char_traits<char>::length(kLocationSeparator));
    return entry;
}

}  // namespace

bool operator==(const LocalLogEntry& left, const LocalLogEntry& right) {
    return left.level == right.level && left.function == right.function && left.message == right.message;
}

void PrintTo(const LocalLogEntry& entry, std::ostream* out) {
    *out << '{' << entry.level << " | " << entry.function << " | \"" << entry.message << "\"}";
}

std::vector<LocalLogEntry> readLocalLog(const std::filesystem::path& file) {
    std::vector<LocalLogEntry> entries;
    for (const std::string& line : readLines(file)) {
        entries.push_back(parseLine(line));
    }
    return entries;
}

std::vector<LocalLogEntry> entriesOf(const std::vector<LocalLogEntry>& entries, const std::string& function) {
    std::vector<LocalLogEntry> chosen;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(chosen),
                 [&function](const LocalLogEntry& entry) { return entry.function == function; });
    return chosen;
}

LocalLogCapture::LocalLogCapture() : file_(folder_ / (std::string(kLoggerName) + ".log")) {
    if (!folder_.path().empty()) {
        // No configuration file: the library writes <folder>/<logger name>.log.
        ready_ = LogWriter_init(nullptr, folder_.path().c_str(), kLoggerName) == 0;
    }
}

std::vector<std::string> LocalLogCapture::lines() const { return readLines(file_); }

std::vector<LocalLogEntry> LocalLogCapture::entries() const { return readLocalLog(file_); }

std::vector<LocalLogEntry> LocalLogCapture::entriesOf(const std::string& function) const {
    return bqltest::entriesOf(entries(), function);
}

int LocalLogCapture::count(const std::string& text) const { return countLinesContaining(lines(), text); }

bool LocalLogCapture::waitFor(const std::string& text, int wanted, std::chrono::milliseconds limit) const {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (count(text) < wanted) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace bqltest
