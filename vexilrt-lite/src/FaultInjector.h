// Failures armed on purpose: a named operation returns a chosen status for its next N calls,
// or always, so that a softphone's error paths can be driven.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "bqlcommon/Mutex.h"

namespace vexil {

class FaultInjector {
public:
    static constexpr int32_t kAlways = -1;

    // Every operation that can be made to fail, by the name a caller arms it with.
    static std::size_t nameCount();
    static const char* nameAt(std::size_t index);
    static bool isKnown(const std::string& name);

    // `remaining` is a positive count or kAlways; the name must be known.
    void arm(const std::string& name, int32_t status, int32_t remaining) BQL_EXCLUDES(mutex_);

    // The status to fail with when a fault is armed for `name`; counts the call down.
    std::optional<int32_t> take(const char* name) BQL_EXCLUDES(mutex_);

    void clear() BQL_EXCLUDES(mutex_);

private:
    struct Fault {
        int32_t status;
        int32_t remaining;
    };

    bql::Mutex mutex_;
    std::map<std::string, Fault, std::less<>> faults_ BQL_GUARDED_BY(mutex_);
};

}  // namespace vexil
