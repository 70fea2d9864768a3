// What every control function shares: no exception leaves it, texts coming in are checked
// (UTF-8, length) before anything changes, texts going out fit their buffer or are not written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "vexilctl/VexilControl.h"

namespace vexil {

template <class Body>
int32_t controlGuarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return VEXILCTL_E_INTERNAL;
    }
}

// Converts `text` to UTF-32 into `out`. VEXILCTL_E_INVALID_ARG for null or bad UTF-8,
// VEXILCTL_E_TOO_LONG beyond `maxChars` characters.
int32_t readText(const char* text, std::size_t maxChars, std::wstring& out);

// A device path of a control call: a plugged-in headset's, or "" for a report without a device.
int32_t readEventDevicePath(const char* path, std::wstring& out);

// Writes `text` with its terminator. VEXILCTL_E_INVALID_ARG for a null buffer or capacity
// <= 0; VEXILCTL_E_BUFFER_TOO_SMALL, with the empty string written, when it does not fit.
int32_t writeText(const std::string& text, char* buffer, int32_t capacity);

}  // namespace vexil
