// A stop request that wakes whoever waits for it: the storm's threads pace themselves with
// waitFor, which returns at once when the storm ends.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>

#include "bqlcommon/Mutex.h"

namespace colloqvalidate {

class StopSignal {
public:
    void raise() BQL_EXCLUDES(mutex_) {
        {
            bql::MutexLock lock(mutex_);
            raised_.store(true);
        }
        changed_.notify_all();
    }

    bool raised() const { return raised_.load(); }

    // Waits for the duration or until the stop is raised; true when it was raised.
    bool waitFor(std::chrono::milliseconds duration) BQL_EXCLUDES(mutex_) {
        const auto deadline = std::chrono::steady_clock::now() + duration;
        bql::MutexLock lock(mutex_);
        while (!raised_.load()) {
            if (!lock.waitUntil(changed_, deadline)) {
                break;
            }
        }
        return raised_.load();
    }

private:
    bql::Mutex mutex_;
    std::condition_variable changed_;
    std::atomic<bool> raised_{false};
};

}  // namespace colloqvalidate
