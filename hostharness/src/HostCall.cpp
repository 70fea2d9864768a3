#include "hostharness/HostCall.h"

namespace hostharness {

namespace {

const char* const kSlotNames[kCallControlSlots] = {
    "getCalls",
    "unused1",
    "unused2",
    "makeCall",
    "answerCall",
    "unused5",
    "endCall",
    "sendDtmf",
    "muteCall",
    "unmuteCall",
    "unused10",
    "unused11",
    "unused12",
    "unused13",
    "unused14",
    "unused15",
    "unused16",
    "unused17",
    "holdCall",
    "resumeCall",
    "unused20",
    "activeDeviceChanged",
    "releaseActiveDevice",
    "registerAccessoryCallbacks",
    "unregisterAccessoryCallbacks",
    "rejectCall",
};

int32_t slotOf(HostCall call) { return static_cast<int32_t>(call); }

}  // namespace

bool isCallControlSlot(HostCall call) { return slotOf(call) >= 0 && slotOf(call) < kCallControlSlots; }

bool isKnownHostCall(HostCall call) {
    return isCallControlSlot(call) || call == HostCall::EntryPoint || call == HostCall::GetLogger ||
           call == HostCall::Log;
}

bool isUnusedSlot(HostCall call) {
    const int32_t slot = slotOf(call);
    return slot == 1 || slot == 2 || slot == 5 || (slot >= 10 && slot <= 17) || slot == 20;
}

bool hasConfigurableResult(HostCall call) {
    if (call == HostCall::GetLogger) {
        return true;
    }
    return isCallControlSlot(call) && !isUnusedSlot(call) && call != HostCall::GetCalls;
}

const char* hostCallName(HostCall call) {
    if (isCallControlSlot(call)) {
        return kSlotNames[slotOf(call)];
    }
    switch (call) {
        case HostCall::EntryPoint:
            return "entryPoint";
        case HostCall::GetLogger:
            return "getLogger";
        case HostCall::Log:
            return "log";
        default:
            return "unknown";
    }
}

HarnessStatus callControlSlot(int32_t slot, HostCall* call) {
    if (call == nullptr) {
        return HarnessStatus::NullArgument;
    }
    if (slot < 0 || slot >= kCallControlSlots) {
        return HarnessStatus::UnknownSlot;
    }
    *call = static_cast<HostCall>(slot);
    return HarnessStatus::Ok;
}

}  // namespace hostharness
