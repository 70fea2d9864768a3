#include "PluginCycle.h"

#include <algorithm>
#include <thread>

#include "TimedUninitialize.h"
#include "hostharness/HostHarness.h"

namespace colloqvalidate {

namespace {

using namespace std::chrono_literals;

// A joined thread may still be listed for a moment while the system takes it down.
constexpr auto kThreadSettleTime = 1000ms;
constexpr auto kThreadSettlePoll = 2ms;

}  // namespace

ThreadComparison threadsSettledAgainst(const std::vector<std::string>& before, const std::vector<std::string>& hostThreads,
                                       std::chrono::milliseconds settle, std::vector<std::string>* after) {
    const auto deadline = std::chrono::steady_clock::now() + settle;
    for (;;) {
        *after = liveThreadNames();
        ThreadComparison comparison = compareThreads(before, *after, hostThreads);
        if (comparison.clean() || std::chrono::steady_clock::now() >= deadline) {
            return comparison;
        }
        std::this_thread::sleep_for(kThreadSettlePoll);
    }
}

std::optional<CheckFailure> PluginCycle::run(hostharness::PluginLibrary& plugin, CycleFigures* figures, bool* hung) {
    hostharness::HostHarness& host = hostharness::HostHarness::instance();
    // A fresh client each time; the journal of the cycle before is dropped, so it cannot grow.
    host.reset();
    const std::vector<std::string> before = liveThreadNames();
    int result = 0;
    const hostharness::HarnessStatus status = plugin.initialize(host.entryPoint(), &result);
    if (status != hostharness::HarnessStatus::Ok) {
        return CheckFailure{"initialize is called",
                            "the harness could not call initialize: " + std::string(hostharness::describe(status))};
    }
    return finish(plugin, before, figures, hung);
}

std::optional<CheckFailure> PluginCycle::finish(hostharness::PluginLibrary& plugin,
                                                const std::vector<std::string>& threadsBefore, CycleFigures* figures,
                                                bool* hung) {
    if (figures->completed == 0) {
        figures->threadsBeforeFirst = threadsBefore.size();
    }
    const UninitializeTiming timing = uninitializeWithin(plugin, limits_.uninitialize);
    if (!timing.started) {
        return CheckFailure{"uninitialize is called", "no thread could be started to call uninitialize"};
    }
    figures->maxUninitialize = std::max(figures->maxUninitialize, timing.elapsed);
    if (!timing.returned) {
        *hung = true;
        return CheckFailure{"uninitialize returns within " + std::to_string(limits_.uninitialize.count()) + " ms",
                            "uninitialize had not returned after " + std::to_string(timing.elapsed.count()) +
                                " ms (cycle " + std::to_string(figures->completed + 1) + ")"};
    }
    std::vector<std::string> after;
    const ThreadComparison threads = threadsSettledAgainst(threadsBefore, limits_.hostThreads, kThreadSettleTime, &after);
    figures->threadsAfterLast = after.size();
    figures->pipeReceiverStayed = figures->pipeReceiverStayed || threads.pipeReceiverStayed;
    if (!threads.clean()) {
        return CheckFailure{"threads back to the baseline",
                            std::to_string(threadsBefore.size()) + " threads before initialize, " +
                                std::to_string(after.size()) + " after uninitialize; left running: " +
                                joinNames(threads.leftOver) + " (cycle " + std::to_string(figures->completed + 1) +
                                ")"};
    }
    ++figures->completed;
    return std::nullopt;
}

}  // namespace colloqvalidate
