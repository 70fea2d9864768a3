// The one record that the plug-in and the hub exchange: 2196 bytes of raw memory in host byte
// order, 4-byte aligned, no padding. Wide fields hold 32-bit characters and narrow fields bytes,
// each terminated inside its field (a narrow field filled to the brim carries no terminator).
#pragma once

#include <cstddef>
#include <cstdint>

enum MessageType : uint32_t {
    // A call-state change from the plug-in, or a headset call event from the hub.
    MESSAGE_TYPE_CALL = 0,
    // From the hub: place an outgoing call to phoneNumber.
    MESSAGE_TYPE_DIAL = 1,
    // Active-device traffic, qualified by deviceAction.
    MESSAGE_TYPE_ACTIVE_DEVICE = 2,
};

// One numbering for both directions: 7 and 9 to 12 mean the same either way. Not the device
// runtime's call-state codes.
enum ColloqCallState : uint32_t {
    // From the hub.
    COLLOQ_DEVICE_SELECTED = 1,          // this device became the active one
    COLLOQ_FOREGROUND = 2,               // bring the client forward
    COLLOQ_FOREGROUND_WHEN_IDLE = 3,     // bring the client forward when there is no call
    COLLOQ_FOREGROUND_ALT = 4,           // as 2
    COLLOQ_FOREGROUND_WHEN_IDLE_ALT = 5, // as 3
    COLLOQ_ACCEPT_CALL = 6,
    // Both directions.
    COLLOQ_TERMINATE_CALL = 7,
    // From the hub.
    COLLOQ_TERMINATE_CALL_ALT = 8,       // as 7
    // Both directions.
    COLLOQ_HOLD_CALL = 9,
    COLLOQ_RESUME_CALL = 10,
    COLLOQ_MUTE_ON = 11,
    COLLOQ_MUTE_OFF = 12,
    // From the hub.
    COLLOQ_DTMF_KEY = 13,                // the keys are in dtmfKeys
    COLLOQ_REJECT_CALL = 14,
    // From the plug-in.
    COLLOQ_INCOMING_CALL = 15,
    COLLOQ_OUTGOING_CALL = 16,
    COLLOQ_ANSWERED_CALL = 17,
    COLLOQ_INSERT_CALL = 18,             // a call already in progress, made known to the hub
    // From the hub.
    COLLOQ_DEVICE_CHANGE = 19,           // the device's name is in dtmfKeys
    // From the plug-in: the code of every active-device request.
    COLLOQ_DEVICE_REQUEST = 20,
};

// Values of deviceAction, which only active-device messages use.
enum DeviceAction : uint32_t {
    DEVICE_ACTION_ACTIVE = 0,  // from the hub: the active device is devicePath
    DEVICE_ACTION_NONE = 1,    // from the hub: there is no active device
    DEVICE_ACTION_GET = 2,     // from the plug-in: report the active device
    DEVICE_ACTION_SET = 3,     // from the plug-in: make the device with productId the active one
};

struct ColloqCallArgs {
    MessageType messageType;
    ColloqCallState callState;
    uint32_t deviceAction;     // a DeviceAction in active-device messages, 0 in all others
    int32_t callId;            // the client's call id; 0 when the message concerns no call
    wchar_t devicePath[128];   // hub to plug-in
    wchar_t contactName[256];  // plug-in to hub
    wchar_t phoneNumber[128];  // the contact's number to the hub, the number to dial from it
    char extraText[64];        // first free text of a headset event
    char dtmfKeys[64];         // the DTMF keys, or the device name with COLLOQ_DEVICE_CHANGE
    uint32_t productId;        // USB product id of a set-active-device request
};

static_assert(sizeof(wchar_t) == 4, "the record carries 32-bit characters");
static_assert(sizeof(MessageType) == 4 && sizeof(ColloqCallState) == 4, "enumerations travel as 32 bits");
static_assert(alignof(ColloqCallArgs) == 4, "the record is 4-byte aligned");
static_assert(sizeof(ColloqCallArgs) == 2196, "the record is 2196 bytes");
static_assert(offsetof(ColloqCallArgs, messageType) == 0);
static_assert(offsetof(ColloqCallArgs, callState) == 4);
static_assert(offsetof(ColloqCallArgs, deviceAction) == 8);
static_assert(offsetof(ColloqCallArgs, callId) == 12);
static_assert(offsetof(ColloqCallArgs, devicePath) == 16);
static_assert(offsetof(ColloqCallArgs, contactName) == 528);
static_assert(offsetof(ColloqCallArgs, phoneNumber) == 1552);
static_assert(offsetof(ColloqCallArgs, extraText) == 2064);
static_assert(offsetof(ColloqCallArgs, dtmfKeys) == 2128);
static_assert(offsetof(ColloqCallArgs, productId) == 2192);
