#include "hostharness/Expectation.h"

namespace hostharness {

bool matches(const CallExpectation& expected, const RecordedCall& recorded) {
    return recorded.sequence > expected.afterSequence && recorded.call == expected.call &&
           (!expected.device || *expected.device == recorded.device) &&
           (!expected.number || *expected.number == recorded.number) &&
           (!expected.key || *expected.key == recorded.key);
}

bool matches(const LogExpectation& expected, const RecordedCall& recorded) {
    if (recorded.sequence <= expected.afterSequence || recorded.call != HostCall::Log) {
        return false;
    }
    if (expected.severity && *expected.severity != recorded.severity) {
        return false;
    }
    if (expected.match == TextMatch::Contains) {
        return recorded.text.find(expected.text) != std::string::npos;
    }
    return recorded.text == expected.text;
}

}  // namespace hostharness
