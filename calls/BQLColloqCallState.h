// The plug-in's own view of a call.
#pragma once

#include <cstdint>

enum BQLColloqCallState : int32_t {
    BQL_CALL_IDLE = 0,
    BQL_CALL_OUTGOING = 1,
    BQL_CALL_INCOMING = 2,
    BQL_CALL_CONNECTED = 3,
    BQL_CALL_HELD = 4,
    // The headset asked to end the call and the client's end failed: end it once it connects.
    BQL_CALL_TERMINATE_PENDING = 5,
};
