#include <system_error>
#include <thread>
#include <vector>

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

// Each producer rings and ends its own calls; every call is two events, and its end is the
// runtime's terminate command, which the session counts.
ThroughputFigures pluginThroughput(PluginSession& session, int producers, int64_t events, int32_t firstId) {
    ThroughputFigures figures;
    figures.producers = producers;
    const int64_t callsPerProducer = events / producers / 2;
    figures.events = callsPerProducer * producers * 2;
    session.resetTerminates();
    session.forgetJournal();
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
    const int64_t accepted = nowNs();
    if (refused) {
        figures.problem = "a client thread could not be started";
        return figures;
    }
    if (!session.awaitTerminates(callsPerProducer * producers, std::chrono::minutes(5))) {
        figures.problem = "not every ended call reached the runtime";
        return figures;
    }
    const int64_t through = nowNs();
    figures.acceptedPerSecond = static_cast<double>(figures.events) * 1e9 / static_cast<double>(accepted - begin);
    figures.sustainedPerSecond = static_cast<double>(figures.events) * 1e9 / static_cast<double>(through - begin);
    return figures;
}

}  // namespace

void runThroughput(PluginSession& session, const Options& options, Results& results) {
    int32_t firstId = kFirstId;
    for (const int producers : {1, 4, 8}) {
        ThroughputFigures figures = pluginThroughput(session, producers, options.throughputEvents, firstId);
        firstId += static_cast<int32_t>(figures.events);
        figures.barePerSecond = lockedListEventsPerSecond(producers, figures.events / producers);
        if (figures.problem.empty()) {
            figures.problem = describeForeignHubs();
        }
        results.throughput.push_back(figures);
    }
    session.forgetJournal();
}

}  // namespace bench
