// The hub's side of the storm: one thread ("hub-toggle") that starts the hub simulator, lets
// it send headset events for a few seconds, stops it, waits a few seconds, and again, so that
// the plug-in switches between the hub and the direct runtime again and again.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

#include "EventTally.h"
#include "StopSignal.h"
#include "StormProblems.h"
#include "Timeline.h"

namespace colloqvalidate {

class HubStorm {
public:
    HubStorm(colloqsim::Timeline& timeline, EventTally& tally, StopSignal& stop, StormProblems& problems)
        : timeline_(timeline), tally_(tally), stop_(stop), problems_(problems) {}
    ~HubStorm() { join(); }
    HubStorm(const HubStorm&) = delete;
    HubStorm& operator=(const HubStorm&) = delete;

    // program: the hub simulator; device: the hub's active device.
    bool start(const std::string& program, const std::string& device, uint32_t seed, std::string* error);
    // Returns once the thread has stopped the hub and ended.
    void join();

    uint64_t starts() const { return starts_.load(); }
    uint64_t reports() const { return reports_.load(); }

private:
    void run(std::string program, std::string device, uint32_t seed);

    colloqsim::Timeline& timeline_;
    EventTally& tally_;
    StopSignal& stop_;
    StormProblems& problems_;
    std::atomic<uint64_t> starts_{0};
    std::atomic<uint64_t> reports_{0};
    std::thread thread_;
};

}  // namespace colloqvalidate
