// The client's side of the storm: threads that fire random callbacks of the registered table
// (random call ids, states, numbers) as fast as the worker takes their events, each counted in
// the tally once it has returned. The number of events still queued is kept below a limit, so
// that the storm measures the plug-in, not how long a queue can grow.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "EventTally.h"
#include "StopSignal.h"
#include "StormProblems.h"

namespace colloqvalidate {

class ClientStorm {
public:
    ClientStorm(EventTally& tally, StopSignal& stop, StormProblems& problems)
        : tally_(tally), stop_(stop), problems_(problems) {}
    ~ClientStorm() { join(); }
    ClientStorm(const ClientStorm&) = delete;
    ClientStorm& operator=(const ClientStorm&) = delete;

    // Starts `threads` firing threads ("client-<n>"); false and a reason when one cannot be
    // started (those already running keep running until the stop).
    bool start(int threads, uint32_t seed, std::string* error);
    // Returns once every thread has seen the stop and ended.
    void join();

    uint64_t fired() const { return fired_.load(); }

private:
    void fire(uint32_t seed);

    EventTally& tally_;
    StopSignal& stop_;
    StormProblems& problems_;
    std::atomic<uint64_t> fired_{0};
    std::vector<std::thread> threads_;
};

}  // namespace colloqvalidate
