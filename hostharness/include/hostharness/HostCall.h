// Every function of the client that a plug-in can call: the 26 call-control slots (the value
// is the slot number), the entry point, and the two logger operations.
#pragma once

#include <cstdint>

#include "hostharness/HarnessStatus.h"

namespace hostharness {

enum class HostCall : int32_t {
    GetCalls = 0,
    Unused1 = 1,
    Unused2 = 2,
    MakeCall = 3,
    AnswerCall = 4,
    Unused5 = 5,
    EndCall = 6,
    SendDtmf = 7,
    MuteCall = 8,
    UnmuteCall = 9,
    Unused10 = 10,
    Unused11 = 11,
    Unused12 = 12,
    Unused13 = 13,
    Unused14 = 14,
    Unused15 = 15,
    Unused16 = 16,
    Unused17 = 17,
    HoldCall = 18,
    ResumeCall = 19,
    Unused20 = 20,
    ActiveDeviceChanged = 21,
    ReleaseActiveDevice = 22,
    RegisterAccessoryCallbacks = 23,
    UnregisterAccessoryCallbacks = 24,
    RejectCall = 25,
    EntryPoint = 100,
    GetLogger = 101,
    Log = 102,
};

constexpr int32_t kCallControlSlots = 26;

bool isKnownHostCall(HostCall call);
bool isCallControlSlot(HostCall call);
// The placeholders a plug-in never calls (slots 1, 2, 5, 10 to 17 and 20).
bool isUnusedSlot(HostCall call);
// The operations whose 16-bit result a test can choose: every named call-control operation
// except getCalls (which answers with the configured calls), and getLogger.
bool hasConfigurableResult(HostCall call);

// The client's name of the operation ("answerCall", "unused5", "entryPoint", "log"), or
// "unknown" for values outside the enumeration.
const char* hostCallName(HostCall call);

// Maps a call-control slot number to its operation; UnknownSlot outside 0 to 25.
HarnessStatus callControlSlot(int32_t slot, HostCall* call);

}  // namespace hostharness
