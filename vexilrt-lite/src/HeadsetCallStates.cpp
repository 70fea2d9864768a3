#include "HeadsetCallStates.h"

namespace vexil {

void HeadsetCallStates::set(int32_t callId, HeadsetCallState state) {
    bql::MutexLock lock(mutex_);
    calls_[callId] = state;
}

std::optional<HeadsetCallState> HeadsetCallStates::get(int32_t callId) const {
    bql::MutexLock lock(mutex_);
    const auto found = calls_.find(callId);
    return found == calls_.end() ? std::nullopt : std::optional<HeadsetCallState>(found->second);
}

void HeadsetCallStates::setMuted(bool muted) {
    bql::MutexLock lock(mutex_);
    muted_ = muted;
}

bool HeadsetCallStates::muted() const {
    bql::MutexLock lock(mutex_);
    return muted_;
}

void HeadsetCallStates::clear() {
    bql::MutexLock lock(mutex_);
    calls_.clear();
    muted_ = false;
}

}  // namespace vexil
