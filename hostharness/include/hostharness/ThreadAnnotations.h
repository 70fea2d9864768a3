// Lock discipline that clang's -Wthread-safety checks: a mutex type the analysis understands,
// a scoped lock for it, and the attribute macros to mark which data a mutex guards. Other
// compilers see plain code.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define HH_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define HH_THREAD_ANNOTATION(x)
#endif

#define HH_CAPABILITY(name) HH_THREAD_ANNOTATION(capability(name))
#define HH_SCOPED_CAPABILITY HH_THREAD_ANNOTATION(scoped_lockable)
#define HH_GUARDED_BY(m) HH_THREAD_ANNOTATION(guarded_by(m))
#define HH_PT_GUARDED_BY(m) HH_THREAD_ANNOTATION(pt_guarded_by(m))
#define HH_REQUIRES(...) HH_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define HH_ACQUIRE(...) HH_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define HH_RELEASE(...) HH_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define HH_EXCLUDES(...) HH_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))

namespace hostharness {

class HH_CAPABILITY("mutex") Mutex {
public:
    void lock() HH_ACQUIRE() { mutex_.lock(); }
    void unlock() HH_RELEASE() { mutex_.unlock(); }
    std::mutex& native() { return mutex_; }

private:
    std::mutex mutex_;
};

// Holds a Mutex for its scope. Waiting on a condition variable releases and re-takes the mutex
// inside the call, so to the analysis the mutex stays held; callers test their condition in a
// loop around waitUntil, where the analysis can see the guarded reads.
class HH_SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) HH_ACQUIRE(mutex) : lock_(mutex.native()) {}
    ~MutexLock() HH_RELEASE() {}
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    std::cv_status waitUntil(std::condition_variable& condition, std::chrono::steady_clock::time_point deadline) {
        return condition.wait_until(lock_, deadline);
    }
    void wait(std::condition_variable& condition) { condition.wait(lock_); }

private:
    std::unique_lock<std::mutex> lock_;
};

}  // namespace hostharness
