// Collects what other threads deliver, in order, so that a test can wait for it with a time-out.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <utility>
#include <vector>

#include "bqlcommon/Mutex.h"

namespace bqltest {

template <class Item>
class Inbox {
public:
    void put(Item item) BQL_EXCLUDES(mutex_) {
        {
            bql::MutexLock lock(mutex_);
            items_.push_back(std::move(item));
        }
        arrived_.notify_all();
    }

    std::vector<Item> items() const BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        return items_;
    }

    std::size_t count() const BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        return items_.size();
    }

    void clear() BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        items_.clear();
    }

    // True once at least `count` items have arrived, false when the time-out passes first.
    bool waitFor(std::size_t count, std::chrono::milliseconds limit = std::chrono::seconds(10)) const
        BQL_EXCLUDES(mutex_) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        bql::MutexLock lock(mutex_);
        while (items_.size() < count) {
            if (!lock.waitUntil(arrived_, deadline)) {
                return items_.size() >= count;
            }
        }
        return true;
    }

private:
    mutable bql::Mutex mutex_;
    mutable std::condition_variable arrived_;
    std::vector<Item> items_ BQL_GUARDED_BY(mutex_);
};

}  // namespace bqltest
