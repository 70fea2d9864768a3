// Results of the harness's own operations. Nothing in the harness throws to its caller or
// across the client's C functions; every refusal is one of these and changes nothing.
#pragma once

#include <cstdint>

namespace hostharness {

enum class HarnessStatus : int32_t {
    Ok = 0,
    NullArgument,       // a pointer the operation needs was null
    UnknownSlot,        // no such operation, callback slot or entry-point version
    EmptySlot,          // a callback slot the client's table leaves empty
    NoResult,           // the operation returns nothing that could be configured
    TextTooLong,        // a text does not fit its fixed field of the call record
    NotRegistered,      // no callback table is registered
    CallbackMissing,    // the registered table has a null pointer in that slot
    TimedOut,           // the awaited call or log line did not come in time
    LoadFailed,         // the plug-in file could not be loaded
    EntryPointMissing,  // the plug-in lacks initialize or uninitialize
    AlreadyLoaded,
    NotLoaded,
    AlreadyInitialized,
    NotInitialized,
    ThreadNotStarted,   // the system refused a thread of the requested stack size
};

// A short fixed English description, never null.
const char* describe(HarnessStatus status);

}  // namespace hostharness
