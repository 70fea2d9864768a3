// Timestamps handed from an observed thread (the runtime's command observer, the client's
// journal listener) to the thread that waits for one of them, matched by a key. The last few
// stamps are kept, so a report that comes between the awaited one and the wait does not hide it.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "bqlcommon/Mutex.h"

namespace bench {

class Mailbox {
public:
    // Keeps the stamp; the oldest one goes when the box is full.
    void post(int64_t key, int64_t stampNs) BQL_EXCLUDES(mutex_);
    // The oldest stamp kept for `key`, once there is one, or nothing when the time ran out. It
    // and every stamp posted before it are dropped.
    std::optional<int64_t> take(int64_t key, std::chrono::milliseconds timeout) BQL_EXCLUDES(mutex_);

private:
    struct Entry {
        int64_t key;
        int64_t stamp;
    };
    static constexpr std::size_t kCapacity = 64;

    std::optional<int64_t> findLocked(int64_t key) BQL_REQUIRES(mutex_);

    bql::Mutex mutex_;
    std::condition_variable posted_;
    std::array<Entry, kCapacity> entries_ BQL_GUARDED_BY(mutex_){};
    std::size_t first_ BQL_GUARDED_BY(mutex_) = 0;
    std::size_t count_ BQL_GUARDED_BY(mutex_) = 0;
};

}  // namespace bench
