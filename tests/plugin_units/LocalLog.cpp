#include "LocalLog.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "bqlutil/LogWriter.h"

namespace {

// Lines read "<date> <time> <level padded> [<thread>] <function> <location> <message>", and
// the plug-in always passes "<>" as the location.
constexpr const char* kLocationSeparator = " <> ";

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
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
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

LocalLogCapture::LocalLogCapture() {
    if (!folder_.path().empty()) {
        // No configuration file: the library writes <folder>/Vexil_Colloq.log.
        ready_ = LogWriter_init(nullptr, folder_.path().c_str(), "Vexil_Colloq") == 0;
    }
}

std::vector<LocalLogEntry> LocalLogCapture::entries() const {
    return readLocalLog(folder_.path() / "Vexil_Colloq.log");
}

std::vector<LocalLogEntry> LocalLogCapture::entriesOf(const std::string& function) const {
    return ::entriesOf(entries(), function);
}
