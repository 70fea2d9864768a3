// Keeps each client thread of a throughput run to a few calls in flight, and tells when every call
// has ended. A call has ended when the runtime took its terminate command. Each thread owns a
// range of call ids and waits on its own condition, so one ended call wakes only its owner.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <vector>

#include "PluginSession.h"
#include "bqlcommon/Mutex.h"

namespace bench {

class CallPacer final : public TerminateListener {
public:
    // Thread p owns the ids firstId + p * callsPerThread up to the next thread's first id.
    CallPacer(int threads, int32_t firstId, int64_t callsPerThread, int64_t window);

    // Before thread p's call number `call` (from 0): waits until at most `window` - 1 of its calls
    // are still in flight; no wait without a window. False when the time ran out.
    bool awaitRoom(int thread, int64_t call, std::chrono::milliseconds timeout);
    // Waits until every call of every thread has ended.
    bool awaitAllEnded(std::chrono::milliseconds timeout);

    void ended(int32_t callId) override;

private:
    struct Lane {
        bql::Mutex mutex;
        std::condition_variable wake;
        int64_t ended BQL_GUARDED_BY(mutex) = 0;
    };
    bool awaitEnded(Lane& lane, int64_t count, std::chrono::steady_clock::time_point deadline);

    const int32_t firstId_;
    const int64_t callsPerThread_;
    const int64_t window_;
    std::vector<std::unique_ptr<Lane>> lanes_;
};

}  // namespace bench
