// Records the runtime passes to its event subscribers, and its call-state codes. The records
// are plain fixed-size structs, valid only during the callback that receives them.
#pragma once

#include <cstddef>
#include <cstdint>

// Headset-side call-state codes. 8 (end, like 2) and 28 (this headset wants to become the
// client's device) carry no name.
enum eCallState : int32_t {
    CALL_STATE_ACCEPT_CALL = 1,
    CALL_STATE_TERMINATE_CALL = 2,
    CALL_STATE_HOLD_CALL = 3,
    CALL_STATE_RESUME_CALL = 4,
    CALL_STATE_MUTEON = 11,
    CALL_STATE_MUTEOFF = 12,
    CALL_STATE_DTMF_KEY = 22,
    CALL_STATE_REJECT_CALL = 23,
    CALL_STATE_DEVICE_CHANGE = 32,
};

// Device states of DeviceStateEventArgs.
enum eDeviceState : int32_t {
    DEVICE_STATE_ATTACHED = 1,
    DEVICE_STATE_REMOVED = 2,
};

constexpr std::size_t VEXIL_DEVICE_PATH_CHARS = 260;
constexpr std::size_t VEXIL_DTMF_KEY_CHARS = 32;
constexpr std::size_t VEXIL_NUMBER_CHARS = 128;

// The DTMF key text a report carries when no key was pressed.
constexpr const char* VEXIL_NO_DTMF_KEY = "255";

struct CallStateEventArgs {
    int32_t callId;
    int32_t callState;  // an eCallState code
    wchar_t devicePath[VEXIL_DEVICE_PATH_CHARS];
    char dtmfKeys[VEXIL_DTMF_KEY_CHARS];   // for code 22: the keys forwarded to the client
    char dtmfKeys2[VEXIL_DTMF_KEY_CHARS];  // the runtime's own second key text
};

struct CallRequestEventArgs {
    wchar_t number[VEXIL_NUMBER_CHARS];
    wchar_t alternateNumber[VEXIL_NUMBER_CHARS];
    wchar_t devicePath[VEXIL_DEVICE_PATH_CHARS];
};

struct DeviceStateEventArgs {
    int32_t state;  // an eDeviceState value
    wchar_t devicePath[VEXIL_DEVICE_PATH_CHARS];
};

static_assert(sizeof(wchar_t) == 4, "runtime strings are 32-bit characters");
static_assert(sizeof(CallStateEventArgs) == 1112, "CallStateEventArgs is 1112 bytes");
static_assert(offsetof(CallStateEventArgs, callState) == 4, "callState at 4");
static_assert(offsetof(CallStateEventArgs, devicePath) == 8, "devicePath at 8");
static_assert(offsetof(CallStateEventArgs, dtmfKeys) == 1048, "dtmfKeys at 1048");
static_assert(offsetof(CallStateEventArgs, dtmfKeys2) == 1080, "dtmfKeys2 at 1080");
static_assert(sizeof(CallRequestEventArgs) == 2064, "CallRequestEventArgs is 2064 bytes");
static_assert(offsetof(CallRequestEventArgs, alternateNumber) == 512, "alternateNumber at 512");
static_assert(offsetof(CallRequestEventArgs, devicePath) == 1024, "devicePath at 1024");
static_assert(sizeof(DeviceStateEventArgs) == 1044, "DeviceStateEventArgs is 1044 bytes");
static_assert(offsetof(DeviceStateEventArgs, devicePath) == 4, "devicePath at 4");
