#include <chrono>
#include <thread>

#include "HubWatch.h"
#include "Phases.h"
#include "ProcessStats.h"

namespace bench {

void runIdle(const Options& options, Results& results) {
    IdleFigures& idle = results.idle;
    idle.windowSeconds = options.idleSeconds;
    const CpuTimes before = cpuTimes();
    const auto threadsBefore = threadCpuSeconds();
    // The window itself is what is measured: nothing to wait for but the time passing.
    std::this_thread::sleep_for(std::chrono::duration<double>(options.idleSeconds));
    const CpuTimes after = cpuTimes();
    for (const auto& [thread, seconds] : threadCpuSeconds()) {
        const auto earlier = threadsBefore.find(thread);
        idle.threadSeconds[thread] = seconds - (earlier == threadsBefore.end() ? 0 : earlier->second);
    }
    idle.selfSeconds = after.selfSeconds - before.selfSeconds;
    idle.childrenSeconds = after.childrenSeconds - before.childrenSeconds;
    idle.problem = describeForeignHubs();
    idle.measured = true;
}

}  // namespace bench
