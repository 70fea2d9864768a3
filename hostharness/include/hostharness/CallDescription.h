// A call as a test describes it, and the client's 112-byte record built from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "colloq/AccessoryAPI.h"
#include "hostharness/HarnessStatus.h"

namespace hostharness {

// Longest texts that fit the record's fields with their terminating NUL.
constexpr std::size_t kMaxNumberLength = sizeof(Accessory_CallInfo_v1_0_t::number) - 1;     // 32
constexpr std::size_t kMaxNameLength = sizeof(Accessory_CallInfo_v1_0_t::displayName) - 1;  // 54

struct CallDescription {
    int32_t id = 0;
    int32_t state = 0;       // the client's numbering, 0 to 10
    int32_t conference = 0;  // non-zero when part of a conference
    std::string number;
    std::string name;
};

// Fills record with the description: zeroed first, texts NUL-terminated. A text longer than
// its field gives TextTooLong and leaves record untouched.
HarnessStatus buildCallInfo(const CallDescription& call, Accessory_CallInfo_v1_0_t* record);

}  // namespace hostharness
