// A copy of the client's call record, taken before anything else looks at it: the client's
// pointer is valid only during its callback.
#pragma once

#include "colloq/AccessoryAPI.h"

// Copies the four leading fields and the trailing opaque bytes as they are, and both texts up
// to their terminator; a text that fills its field without one is copied to the field's end
// and never read beyond it. Bytes after a terminator are not copied (they stay zero).
Accessory_CallInfo_v1_0_t copyCallInfo(Accessory_CallInfo_v1_0_t* source);
