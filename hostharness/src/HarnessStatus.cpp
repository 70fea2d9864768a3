#include "hostharness/HarnessStatus.h"

namespace hostharness {

const char* describe(HarnessStatus status) {
    switch (status) {
        case HarnessStatus::Ok:
            return "ok";
        case HarnessStatus::NullArgument:
            return "a required pointer is null";
        case HarnessStatus::UnknownSlot:
            return "no such slot, operation or version";
        case HarnessStatus::EmptySlot:
            return "the slot is empty in the client's table";
        case HarnessStatus::NoResult:
            return "the operation has no configurable result";
        case HarnessStatus::TextTooLong:
            return "a text does not fit its call-record field";
        case HarnessStatus::NotRegistered:
            return "no callback table is registered";
        case HarnessStatus::CallbackMissing:
            return "the registered table has no function in that slot";
        case HarnessStatus::TimedOut:
            return "timed out";
        case HarnessStatus::LoadFailed:
            return "the plug-in could not be loaded";
        case HarnessStatus::EntryPointMissing:
            return "the plug-in lacks initialize or uninitialize";
        case HarnessStatus::AlreadyLoaded:
            return "a plug-in is already loaded";
        case HarnessStatus::NotLoaded:
            return "no plug-in is loaded";
        case HarnessStatus::AlreadyInitialized:
            return "the plug-in is already initialized";
        case HarnessStatus::NotInitialized:
            return "the plug-in is not initialized";
        case HarnessStatus::ThreadNotStarted:
            return "the thread could not be started";
    }
    return "unknown status";
}

}  // namespace hostharness
