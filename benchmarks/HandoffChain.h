// The lower bound of a path that crosses threads: a timestamp passed from the caller through
// `stages` threads, each woken by a bare mutex + condition variable, the last one recording how
// long the trip took. One stage is the single handoff of client callback -> worker; two stages
// are runtime thread -> worker -> client.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "LatencyRecorder.h"
#include "bqlcommon/Mutex.h"

namespace bench {

class HandoffChain {
public:
    HandoffChain(std::string name, int stages, LatencyRecorder& recorder);
    ~HandoffChain();
    HandoffChain(const HandoffChain&) = delete;
    HandoffChain& operator=(const HandoffChain&) = delete;

    // Starts the stage threads; false when one could not be started (the others are stopped).
    bool start();
    // One trip: stamps, hands the stamp to the first stage and returns once the last stage has
    // recorded it; false when that took longer than `timeout`.
    bool trip(std::chrono::milliseconds timeout);
    // The two halves of a trip that another thread starts (a datagram's receiver hands the
    // sender's stamp on): post returns at once, awaitTrip waits for the last stage.
    void post(int64_t startNs);
    bool awaitTrip(std::chrono::milliseconds timeout) BQL_EXCLUDES(doneMutex_);
    void stop();

private:
    struct Stage {
        bql::Mutex mutex;
        std::condition_variable wake;
        bool full BQL_GUARDED_BY(mutex) = false;
        bool stopping BQL_GUARDED_BY(mutex) = false;
        int64_t stamp BQL_GUARDED_BY(mutex) = 0;
        std::thread thread;
    };

    static void hand(Stage& stage, int64_t stamp);
    void run(std::size_t index);
    void finishTrip();

    const std::string name_;
    LatencyRecorder& recorder_;
    std::vector<std::unique_ptr<Stage>> stages_;
    bql::Mutex doneMutex_;
    std::condition_variable doneWake_;
    bool done_ BQL_GUARDED_BY(doneMutex_) = false;
};

}  // namespace bench
