// Every call command the runtime received, as it read it through the softphone's objects.
// Bounded: the oldest entries go once the log is full.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>

#include "bqlcommon/Mutex.h"
#include "vexilctl/VexilControl.h"

namespace vexil {

class CommandLog {
public:
    static constexpr std::size_t kCapacity = VEXILCTL_COMMAND_LOG_CAPACITY;

    void append(const VexilCtlCommand& command) BQL_EXCLUDES(mutex_);
    std::size_t count() const BQL_EXCLUDES(mutex_);
    std::optional<VexilCtlCommand> at(std::size_t index) const BQL_EXCLUDES(mutex_);
    void clear() BQL_EXCLUDES(mutex_);

private:
    mutable bql::Mutex mutex_;
    std::deque<VexilCtlCommand> entries_ BQL_GUARDED_BY(mutex_);
};

}  // namespace vexil
