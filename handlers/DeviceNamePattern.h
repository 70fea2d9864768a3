// The client's device name read as a regular expression, as the device lookup matches it against
// the runtime's product names.
#pragma once

#include <cstddef>
#include <string>

#include <re2/re2.h>

// The longest name compiled at all. Product names hold at most 200 characters; a name many times
// longer is no device's, and refusing it bounds the compile's time and memory.
constexpr std::size_t kMaximumDeviceNameLength = 4096;

// The name as an ECMAScript pattern over bytes, matched by RE2: time linear in the name and the
// product name, no recursion that grows with either, memory bounded. Construction throws
// std::regex_error, like the standard library's regular expressions, for a name that is no valid
// pattern, is longer than the bound, or uses syntax that the two grammars read differently.
class DeviceNamePattern {
public:
    explicit DeviceNamePattern(const std::string& name);
    DeviceNamePattern(const DeviceNamePattern&) = delete;
    DeviceNamePattern& operator=(const DeviceNamePattern&) = delete;

    // Whether the pattern matches the whole of `productName`.
    bool matchesWhole(const std::string& productName) const;

private:
    const RE2 pattern;
};
