// The simulated headsets of the substitute runtime, known to a scenario by short names: plugs
// them in and out, presses their buttons and dials on them, and shows each of these on the
// timeline. Driven from one thread (the scenario's).
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "Timeline.h"

namespace colloqsim {

struct Headset {
    std::string name;   // the scenario's name for it
    std::string path;   // the runtime's device path
    std::string model;  // the product name
    uint16_t productId = 0x0a1b;
    bool hasDisplay = true;
};

class HeadsetDriver {
public:
    explicit HeadsetDriver(Timeline& timeline) : timeline_(timeline) {}

    // Each returns "" when done, else why not (nothing changed then).
    std::string plug(Headset headset, const std::string& serial);
    std::string unplug(const std::string& name);
    std::string press(const std::string& name, const std::string& button, int32_t callId);
    std::string keys(const std::string& name, const std::string& keys, int32_t callId);
    std::string dial(const std::string& name, const std::string& number);

    // Null when no headset has that name.
    const Headset* find(const std::string& name) const;
    const std::vector<Headset>& headsets() const { return headsets_; }
    // Waits until the runtime has delivered every event raised so far.
    bool waitIdle(std::chrono::milliseconds timeout) const;

    // How the client names a headset's audio device: its product name with the first "."
    // made "_", after the audio engine's prefix.
    static std::string clientDeviceId(const Headset& headset);

private:
    std::string send(const std::string& name, int32_t code, int32_t callId, const std::string& keys,
                     const std::string& what);

    Timeline& timeline_;
    std::vector<Headset> headsets_;
};

}  // namespace colloqsim
