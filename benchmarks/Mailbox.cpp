#include "Mailbox.h"

namespace bench {

void Mailbox::post(int64_t key, int64_t stampNs) {
    {
        bql::MutexLock lock(mutex_);
        if (count_ == kCapacity) {
            first_ = (first_ + 1) % kCapacity;
            --count_;
        }
        entries_[(first_ + count_) % kCapacity] = Entry{key, stampNs};
        ++count_;
    }
    posted_.notify_one();
}

std::optional<int64_t> Mailbox::findLocked(int64_t key) {
    for (std::size_t i = 0; i < count_; ++i) {
        const Entry& entry = entries_[(first_ + i) % kCapacity];
        if (entry.key == key) {
            first_ = (first_ + i + 1) % kCapacity;
            count_ -= i + 1;
            return entry.stamp;
        }
    }
    return std::nullopt;
}

std::optional<int64_t> Mailbox::take(int64_t key, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bql::MutexLock lock(mutex_);
    for (;;) {
        if (const auto stamp = findLocked(key)) {
            return stamp;
        }
        if (!lock.waitUntil(posted_, deadline)) {
            return findLocked(key);
        }
    }
}

}  // namespace bench
