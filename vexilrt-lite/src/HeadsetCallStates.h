// What the headset shows for each call the softphone told it about, and its mute flag.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "bqlcommon/Mutex.h"

namespace vexil {

// Same numbers as VEXILCTL_CALL_*.
enum class HeadsetCallState : int32_t {
    Ringing = 1,
    Outgoing = 2,
    Active = 3,
    Held = 4,
    Ended = 5,
};

class HeadsetCallStates {
public:
    void set(int32_t callId, HeadsetCallState state) BQL_EXCLUDES(mutex_);
    std::optional<HeadsetCallState> get(int32_t callId) const BQL_EXCLUDES(mutex_);

    void setMuted(bool muted) BQL_EXCLUDES(mutex_);
    bool muted() const BQL_EXCLUDES(mutex_);

    void clear() BQL_EXCLUDES(mutex_);

private:
    mutable bql::Mutex mutex_;
    std::map<int32_t, HeadsetCallState> calls_ BQL_GUARDED_BY(mutex_);
    bool muted_ BQL_GUARDED_BY(mutex_) = false;
};

}  // namespace vexil
