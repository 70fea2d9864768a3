#include "hostharness/CallDescription.h"

#include <cstring>

namespace hostharness {

HarnessStatus buildCallInfo(const CallDescription& call, Accessory_CallInfo_v1_0_t* record) {
    if (record == nullptr) {
        return HarnessStatus::NullArgument;
    }
    if (call.number.size() > kMaxNumberLength || call.name.size() > kMaxNameLength) {
        return HarnessStatus::TextTooLong;
    }
    Accessory_CallInfo_v1_0_t built{};
    built.callId = call.id;
    built.callState = call.state;
    built.conference = call.conference;
    std::memcpy(built.number, call.number.data(), call.number.size());
    std::memcpy(built.displayName, call.name.data(), call.name.size());
    *record = built;
    return HarnessStatus::Ok;
}

}  // namespace hostharness
