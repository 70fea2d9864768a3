// A mutex and its scoped guard that clang's thread-safety analysis can follow. The standard and
// Boost mutexes carry no capability attributes, so they are wrapped here.
#pragma once

#include "hubproxy/ThreadAnnotations.h"

namespace detail {

template <class Mutex>
class BQL_CAPABILITY("mutex") AnnotatedMutex {
public:
    AnnotatedMutex() = default;
    AnnotatedMutex(const AnnotatedMutex&) = delete;
    AnnotatedMutex& operator=(const AnnotatedMutex&) = delete;

    void lock() BQL_ACQUIRE() { mutex.lock(); }
    void unlock() BQL_RELEASE() { mutex.unlock(); }

private:
    Mutex mutex;
};

template <class Mutex>
class BQL_SCOPED_CAPABILITY ScopedLock {
public:
    explicit ScopedLock(Mutex& held) BQL_ACQUIRE(held) : mutex(held) { mutex.lock(); }
    ~ScopedLock() BQL_RELEASE() { mutex.unlock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    Mutex& mutex;
};

}  // namespace detail
