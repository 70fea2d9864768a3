// Client device identifiers whose name field is built to break a pattern matcher: too long to
// compile on a small stack, exponential for a backtracking matcher, malformed, or made of bytes
// no device name holds. A plug-in handed any of them must return promptly and stay usable.
#pragma once

#include <string>
#include <vector>

namespace hostharness {

struct HostileDeviceName {
    std::string label;       // what the name is, for reports ("nested repetitions, 64 KiB")
    std::string identifier;  // the whole identifier, as the client's onActiveDeviceChanged hands it
};

// The identifier the client builds for an audio device of the maker with this name.
std::string clientDeviceIdentifier(const std::string& name);

// Every hostile name, the largest 1 MiB, then one name per byte value 1 to 255.
std::vector<HostileDeviceName> hostileDeviceNames();

}  // namespace hostharness
