// The unit of work on the plug-in's event queue. Complete before it is pushed, never changed
// afterwards; always held by std::shared_ptr.
#pragma once

#include <cstdint>
#include <string>

#include "vexilrt/Events.h"

enum BQLColloqEventType : int32_t {
    STOP_PLUGIN_EVENT = 1,
    OUTGOING_CALL_EVENT = 2,
    INCOMING_CALL_EVENT = 3,
    CONNECTED_CALL_EVENT = 4,
    TERMINATED_CALL_EVENT = 5,
    MUTEON_CALL_EVENT = 6,
    MUTEOFF_CALL_EVENT = 7,
    VEXIL_CALL_EVENT = 8,
    ON_HOLD_CALL_EVENT = 9,
    // 10 is never produced.
    BQL_COLLOQ_MAKE_CALL_EVENT = 11,
    ATTACH_DEVICE = 12,
};

// Call id of a headset event that concerns no particular call.
constexpr int32_t BQL_NO_CALL_ID = -1;

struct BQLColloqEvent {
    BQLColloqEventType type;
    int32_t callId;
    eCallState vexilState;  // the headset-side state of a VEXIL_CALL_EVENT; 0 otherwise
    std::string name;
    std::string value;
    std::string info;

    // A client call event: the kind and the call it concerns, nothing else.
    BQLColloqEvent(BQLColloqEventType eventType, int32_t eventCallId);
    // A headset event with all three texts.
    BQLColloqEvent(int callId, eCallState state, std::string name, std::string value, std::string info);
    // A headset event with only its device text.
    BQLColloqEvent(int callId, eCallState state, std::string info);
    // An event of any kind carrying two texts, e.g. a dial request ("phone", number).
    BQLColloqEvent(BQLColloqEventType eventType, std::string name, std::string value);
};
