// A mutex the thread-safety analysis understands, a scoped lock for it, and condition waits
// that keep the analysis informed (the mutex is held again when a wait returns).
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "ThreadAnnotations.h"

namespace vexil {

class CAPABILITY("mutex") Mutex {
public:
    void lock() ACQUIRE() { mutex_.lock(); }
    void unlock() RELEASE() { mutex_.unlock(); }

private:
    std::mutex mutex_;
};

class SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
    ~MutexLock() RELEASE() { mutex_.unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    // One wake-up (possibly spurious): callers loop on their own condition.
    void wait(std::condition_variable_any& condition) { condition.wait(mutex_); }

    // False once the deadline has passed.
    bool waitUntil(std::condition_variable_any& condition,
                   std::chrono::steady_clock::time_point deadline) {
        return condition.wait_until(mutex_, deadline) == std::cv_status::no_timeout;
    }

private:
    Mutex& mutex_;
};

}  // namespace vexil
