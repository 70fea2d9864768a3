#include "Clock.h"
#include "Phases.h"

namespace bench {

void runLifecycle(PluginSession& session, const Options& options, Results& results) {
    const auto runs = static_cast<std::size_t>(options.lifecycleRuns);
    LatencyRecorder connect(runs);
    LatencyRecorder uninitialize(runs);
    for (std::size_t run = 0; run < runs; ++run) {
        int64_t called = 0;
        int64_t connected = 0;
        if (!session.initialize(&called, &connected)) {
            results.lifecycle.problem = session.error();
            return;
        }
        connect.record(connected - called);
        const int64_t before = nowNs();
        if (!session.uninitialize()) {
            results.lifecycle.problem = "uninitialize failed";
            return;
        }
        uninitialize.record(nowNs() - before);
    }
    results.lifecycle.connect = connect.summary();
    results.lifecycle.uninitialize = uninitialize.summary();
    results.lifecycle.measured = true;
}

}  // namespace bench
