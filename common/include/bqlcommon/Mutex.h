// Mutexes the thread-safety analysis understands, a scoped lock for them, and condition waits
// that keep the analysis informed. The standard mutexes carry no capability attributes, so they
// are wrapped here.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "bqlcommon/ThreadAnnotations.h"

namespace bql {

template <class Lockable>
class BasicMutexLock;

template <class Native>
class BQL_CAPABILITY("mutex") BasicMutex {
public:
    using NativeType = Native;

    BasicMutex() = default;
    BasicMutex(const BasicMutex&) = delete;
    BasicMutex& operator=(const BasicMutex&) = delete;

    void lock() BQL_ACQUIRE() { native_.lock(); }
    void unlock() BQL_RELEASE() { native_.unlock(); }

private:
    friend class BasicMutexLock<BasicMutex>;
    Native native_;
};

using Mutex = BasicMutex<std::mutex>;
// For a lock taken again on the same thread, by a callee that calls back in.
using RecursiveMutex = BasicMutex<std::recursive_mutex>;

// Holds a mutex for its scope. A wait releases the mutex and takes it again before it returns,
// so to the analysis the mutex stays held; callers test their condition in a loop around the
// wait, where the analysis sees the guarded reads. Waits exist for a plain Mutex only: on a
// recursive one they would release a single level.
template <class Lockable>
class BQL_SCOPED_CAPABILITY BasicMutexLock {
public:
    explicit BasicMutexLock(Lockable& mutex) BQL_ACQUIRE(mutex) : lock_(mutex.native_) {}
    ~BasicMutexLock() BQL_RELEASE() {}
    BasicMutexLock(const BasicMutexLock&) = delete;
    BasicMutexLock& operator=(const BasicMutexLock&) = delete;

    // One wake-up, possibly spurious.
    void wait(std::condition_variable& condition) { condition.wait(lock_); }

    // False once the deadline has passed.
    bool waitUntil(std::condition_variable& condition, std::chrono::steady_clock::time_point deadline) {
        return condition.wait_until(lock_, deadline) == std::cv_status::no_timeout;
    }

private:
    std::unique_lock<typename Lockable::NativeType> lock_;
};

using MutexLock = BasicMutexLock<Mutex>;
using RecursiveMutexLock = BasicMutexLock<RecursiveMutex>;

}  // namespace bql
