#include "HeadsetCallStates.h"

namespace vexil {

void HeadsetCallStates::set(int32_t callId, HeadsetCallState state) {
    MutexLock lock(mutex_);
    calls_[callId] = state;
}

std::optional<HeadsetCallState> HeadsetCallStates::get(int32_t callId) const {
    MutexLock lock(mutex_);
    const auto found = calls_.find(callId);
    return found == calls_.end() ? std::nullopt : std::optional<HeadsetCallState>(found->second);
}

void HeadsetCallStates::setMuted(bool muted) {
    MutexLock lock(mutex_);
    muted_ = muted;
}

bool HeadsetCallStates::muted() const {
    MutexLock lock(mutex_);
    return muted_;
}

void HeadsetCallStates::clear() {
    MutexLock lock(mutex_);
    calls_.clear();
    muted_ = false;
}

}  // namespace vexil
