#include "CommandLog.h"

namespace vexil {

void CommandLog::append(const VexilCtlCommand& command) {
    bql::MutexLock lock(mutex_);
    if (entries_.size() == kCapacity) {
        entries_.pop_front();
    }
    entries_.push_back(command);
}

std::size_t CommandLog::count() const {
    bql::MutexLock lock(mutex_);
    return entries_.size();
}

std::optional<VexilCtlCommand> CommandLog::at(std::size_t index) const {
    bql::MutexLock lock(mutex_);
    if (index >= entries_.size()) {
        return std::nullopt;
    }
    return entries_[index];
}

void CommandLog::clear() {
    bql::MutexLock lock(mutex_);
    entries_.clear();
}

}  // namespace vexil
