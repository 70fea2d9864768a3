// The headsets' side of the storm: one thread ("headsets") that presses random buttons on the
// plugged-in headsets of the substitute runtime, dials now and then, and plugs extra headsets
// in and out, while one headset stays plugged in throughout (the plug-in stays active).
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

#include "EventTally.h"
#include "HeadsetDriver.h"
#include "StopSignal.h"
#include "StormProblems.h"

namespace colloqvalidate {

class HeadsetStorm {
public:
    HeadsetStorm(colloqsim::HeadsetDriver& headsets, EventTally& tally, StopSignal& stop, StormProblems& problems)
        : headsets_(headsets), tally_(tally), stop_(stop), problems_(problems) {}
    ~HeadsetStorm() { join(); }
    HeadsetStorm(const HeadsetStorm&) = delete;
    HeadsetStorm& operator=(const HeadsetStorm&) = delete;

    // Plugs in the headset that stays; false and a reason when the runtime refuses it.
    bool plugResident(std::string* error);
    // The client's name of the resident headset's audio device.
    std::string residentClientDevice() const;
    std::string residentPath() const;

    bool start(uint32_t seed, std::string* error);
    void join();
    // Unplugs every headset the storm plugged in; after join.
    void unplugAll();

    uint64_t presses() const { return presses_.load(); }
    uint64_t plugs() const { return plugs_.load(); }
    uint64_t unplugs() const { return unplugs_.load(); }

private:
    void run(uint32_t seed);
    void toggleExtra(int which);

    colloqsim::HeadsetDriver& headsets_;
    EventTally& tally_;
    StopSignal& stop_;
    StormProblems& problems_;
    std::atomic<uint64_t> presses_{0};
    std::atomic<uint64_t> plugs_{0};
    std::atomic<uint64_t> unplugs_{0};
    std::thread thread_;
};

}  // namespace colloqvalidate
