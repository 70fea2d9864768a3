#include "ProcessStats.h"

#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace bench {

namespace {

double seconds(const timeval& time) { return static_cast<double>(time.tv_sec) + time.tv_usec / 1e6; }

}  // namespace

int64_t residentBytes() {
    std::ifstream statm("/proc/self/statm");
    int64_t size = 0;
    int64_t resident = 0;
    statm >> size >> resident;
    return resident * ::sysconf(_SC_PAGESIZE);
}

CpuTimes cpuTimes() {
    rusage self{};
    rusage children{};
    ::getrusage(RUSAGE_SELF, &self);
    ::getrusage(RUSAGE_CHILDREN, &children);
    return CpuTimes{seconds(self.ru_utime) + seconds(self.ru_stime),
                    seconds(children.ru_utime) + seconds(children.ru_stime)};
}

std::map<std::string, double> threadCpuSeconds() {
    std::map<std::string, double> threads;
    const double ticks = static_cast<double>(::sysconf(_SC_CLK_TCK));
    std::error_code error;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", error)) {
        std::ifstream commFile(task.path() / "comm");
        std::string name;
        std::getline(commFile, name);
        std::ifstream statFile(task.path() / "stat");
        std::string stat;
        std::getline(statFile, stat);
        // The name in parentheses may hold blanks: the fields that follow start after the last ')'.
        const auto close = stat.rfind(')');
        if (close == std::string::npos) {
            continue;
        }
        std::istringstream fields(stat.substr(close + 2));
        std::string field;
        double utime = 0;
        double stime = 0;
        // Fields 3 to 13 come first; utime and stime are fields 14 and 15.
        for (int index = 3; index <= 15 && fields >> field; ++index) {
            if (index == 14) {
                utime = std::stod(field);
            } else if (index == 15) {
                stime = std::stod(field);
            }
        }
        threads[name + " (" + task.path().filename().string() + ")"] = (utime + stime) / ticks;
    }
    return threads;
}

}  // namespace bench
