// What the benchmark reads about its own process: resident memory, CPU time, and CPU time per
// thread (to say which thread an idle cost belongs to).
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace bench {

int64_t residentBytes();

struct CpuTimes {
    double selfSeconds = 0;      // every thread of this process
    double childrenSeconds = 0;  // children already waited for (the hub check's ps and grep)
};
CpuTimes cpuTimes();

// CPU seconds of each live thread, keyed by "name (tid)".
std::map<std::string, double> threadCpuSeconds();

}  // namespace bench
