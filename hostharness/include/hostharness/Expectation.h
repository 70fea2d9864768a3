// What a test waits for: a call of one operation, optionally with given arguments, or a line
// in the client's log.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "hostharness/HostCall.h"
#include "hostharness/RecordedCall.h"

namespace hostharness {

struct CallExpectation {
    HostCall call = HostCall::GetCalls;
    std::optional<std::string> device;
    std::optional<std::string> number;
    std::optional<char> key;
    uint64_t afterSequence = 0;  // only calls recorded later than this one count
};

enum class TextMatch { Exact, Contains };

struct LogExpectation {
    std::string text;
    TextMatch match = TextMatch::Exact;
    std::optional<int32_t> severity;
    uint64_t afterSequence = 0;
};

bool matches(const CallExpectation& expected, const RecordedCall& recorded);
bool matches(const LogExpectation& expected, const RecordedCall& recorded);

}  // namespace hostharness
