#include "calls/copyCallInfo.h"

#include <cstring>

#include "calls/ClientText.h"

namespace {

void copyText(char* destination, const char* source, std::size_t fieldSize) {
    std::memcpy(destination, source, clienttext::fieldLength(source, fieldSize));
}

}  // namespace

Accessory_CallInfo_v1_0_t copyCallInfo(Accessory_CallInfo_v1_0_t* source) {
    Accessory_CallInfo_v1_0_t copy;
    std::memset(&copy, 0, sizeof copy);
    copy.callId = source->callId;
    copy.reserved0 = source->reserved0;
    copy.callState = source->callState;
    copy.conference = source->conference;
    copyText(copy.number, source->number, sizeof copy.number);
    copyText(copy.displayName, source->displayName, sizeof copy.displayName);
    std::memcpy(copy.opaque, source->opaque, sizeof copy.opaque);
    return copy;
}
