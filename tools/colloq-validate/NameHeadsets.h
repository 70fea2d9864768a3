// The two headsets of the names phase in the substitute runtime: plugged in, named the way the
// client names them, and the runtime's active device read back to see which one the plug-in chose.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

namespace colloqvalidate {

struct NameHeadset {
    std::string productName;  // without "-" or "_", which the client's identifier cannot carry back
    uint16_t productId = 0;
    std::string serial;
    std::string path;  // the runtime's device path, once plugged in
};

class NameHeadsets {
public:
    NameHeadsets();

    // Plugs both in, headset 2 first: the runtime starts with headset 2 active, so the client's
    // choice of headset 1 is seen to take effect. "" when done, else why not.
    std::string plug();
    // Unplugs those plugged in.
    void unplug();

    // Headset 1 or 2.
    const NameHeadset& headset(int number) const { return headsets_.at(static_cast<std::size_t>(number - 1)); }
    // The identifier the client hands for a headset's audio device.
    std::string clientIdentifier(int number) const;
    // The number of the headset that is not the runtime's active device now (1 when neither is).
    int inactiveNumber() const;

    // The runtime's active device path, "" when none.
    static std::string activePath();
    // Waits at most timeout until the runtime's active device is headset `number`; false when it
    // did not become so, with the active path last seen.
    bool waitUntilActive(int number, std::chrono::milliseconds timeout, std::string* lastSeen) const;

private:
    std::array<NameHeadset, 2> headsets_;
    std::array<bool, 2> plugged_{};
};

}  // namespace colloqvalidate
