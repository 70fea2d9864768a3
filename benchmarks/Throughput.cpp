#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

#include "CallPacer.h"
#include "Clock.h"
#include "HubWatch.h"
#include "LockedListBaseline.h"
#include "Phases.h"
#include "StartGate.h"
#include "platform/ThreadName.h"

namespace bench {

namespace {

using hostharness::CallbackSlot;

// Call ids of the throughput runs start here, clear of the ones the call phase used.
constexpr int32_t kFirstId = 10'000'000;
// Calls each client thread may have in flight: a client holds a handful of calls, not thousands.
constexpr int64_t kCallsInFlight = 8;
// The bursts: one client thread firing with no limit, short and ten times as long.
constexpr int64_t kShortBurst = 2000;
constexpr int64_t kLongBurst = 20000;

// Each producer rings and ends its own calls; every call is two events, and its end is the
// runtime's terminate command, which the session counts. With a window, a producer waits before a
// call while `window` of its calls are still in flight; 0 is no limit.
ThroughputFigures pluginThroughput(PluginSession& session, int producers, int64_t events, int32_t firstId,
                                   int64_t window) {
    ThroughputFigures figures;
    figures.producers = producers;
    figures.window = window;
    const int64_t callsPerProducer = events / producers / 2;
    figures.events = callsPerProducer * producers * 2;
    session.forgetRecords();
    CallPacer pacer(producers, firstId, callsPerProducer, window);
    session.setTerminateListener(&pacer);
    StartGate gate;
    std::vector<std::thread> threads;
    bool refused = false;
    try {
        for (int p = 0; p < producers; ++p) {
            threads.emplace_back([&, p] {
                platform::nameCurrentThread("bench-client");
                gate.waitOpen();
                const int32_t base = firstId + static_cast<int32_t>(p * callsPerProducer);
                for (int64_t c = 0; c < callsPerProducer; ++c) {
                    if (!pacer.awaitRoom(p, c, std::chrono::minutes(1))) {
                        return;
                    }
                    const int32_t id = base + static_cast<int32_t>(c);
                    session.fire(CallbackSlot::OnIncoming, id, kClientRinging);
                    session.fire(CallbackSlot::OnOnHook, id, 0);
                }
            });
        }
    } catch (const std::system_error&) {
        refused = true;
    }
    const int64_t begin = nowNs();
    gate.open();
    for (auto& thread : threads) {
        thread.join();
    }
    const bool allEnded = !refused && pacer.awaitAllEnded(std::chrono::minutes(1));
    const int64_t through = nowNs();
    session.setTerminateListener(nullptr);
    if (refused) {
        figures.problem = "a client thread could not be started";
        return figures;
    }
    if (!allEnded) {
        figures.problem = "not every ended call reached the runtime within a minute";
        return figures;
    }
    figures.sustainedPerSecond = static_cast<double>(figures.events) * 1e9 / static_cast<double>(through - begin);
    return figures;
}

}  // namespace

void runThroughput(PluginSession& session, const Options& options, Results& results) {
    int32_t firstId = kFirstId;
    const auto measure = [&](int producers, int64_t events, int64_t window) {
        const std::string hubsBefore = describeForeignHubs();
        ThroughputFigures figures;
        if (hubsBefore.empty()) {
            figures = pluginThroughput(session, producers, events, firstId, window);
            firstId += static_cast<int32_t>(figures.events);
        } else {
            figures.producers = producers;
            figures.window = window;
            figures.events = events;
            figures.problem = hubsBefore;
        }
        figures.barePerSecond = lockedListEventsPerSecond(producers, figures.events / producers);
        if (figures.problem.empty()) {
            figures.problem = describeForeignHubs();
        }
        results.throughput.push_back(figures);
    };
    for (const int producers : {1, 4, 8}) {
        measure(producers, options.throughputEvents, kCallsInFlight);
    }
    for (const int64_t burst : {kShortBurst, kLongBurst}) {
        measure(1, std::min(burst, options.throughputEvents), 0);
    }
    session.forgetRecords();
}

}  // namespace bench
