// Status codes of the Vexil device runtime. Every operation returns 0 on success.
#pragma once

#include <cstdint>

enum VexilStatus : int32_t {
    VEXIL_OK = 0,
    VEXIL_E_REFUSED = -1,           // the runtime refused (also setActiveDevice's "not done")
    VEXIL_E_INVALID_ARG = 0x101,    // a null pointer, a bad capacity or an unknown value
    VEXIL_E_NOT_INITIALIZED = 0x102,
    VEXIL_E_NOT_FOUND = 0x103,      // no such session, device or plug-in id
    VEXIL_E_ALREADY_EXISTS = 0x104, // a second session or subscriber where only one may be
    VEXIL_E_NO_DEVICE = 0x105,      // no active device
    VEXIL_E_BUFFER_TOO_SMALL = 0x106,
    VEXIL_E_NOT_SUPPORTED = 0x107,  // an operation this runtime does not provide
};
