// A readers-writer lock that clang's thread-safety analysis understands, with scoped holders.
#pragma once

#include <shared_mutex>

#include "bqlcommon/ThreadAnnotations.h"

namespace bql {

class BQL_CAPABILITY("shared mutex") SharedMutex {
public:
    SharedMutex() = default;
    SharedMutex(const SharedMutex&) = delete;
    SharedMutex& operator=(const SharedMutex&) = delete;

    void lock() BQL_ACQUIRE() { native_.lock(); }
    void unlock() BQL_RELEASE() { native_.unlock(); }
    void lock_shared() BQL_ACQUIRE_SHARED() { native_.lock_shared(); }
    void unlock_shared() BQL_RELEASE_SHARED() { native_.unlock_shared(); }

private:
    std::shared_mutex native_;
};

// Holds the mutex alone, for writers.
class BQL_SCOPED_CAPABILITY ExclusiveLock {
public:
    explicit ExclusiveLock(SharedMutex& mutex) BQL_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
    ~ExclusiveLock() BQL_RELEASE() { mutex_.unlock(); }
    ExclusiveLock(const ExclusiveLock&) = delete;
    ExclusiveLock& operator=(const ExclusiveLock&) = delete;

private:
    SharedMutex& mutex_;
};

// Holds the mutex beside other readers.
class BQL_SCOPED_CAPABILITY SharedLock {
public:
    explicit SharedLock(SharedMutex& mutex) BQL_ACQUIRE_SHARED(mutex) : mutex_(mutex) { mutex_.lock_shared(); }
    ~SharedLock() BQL_RELEASE_GENERIC() { mutex_.unlock_shared(); }
    SharedLock(const SharedLock&) = delete;
    SharedLock& operator=(const SharedLock&) = delete;

private:
    SharedMutex& mutex_;
};

}  // namespace bql
