// Counts this process's threads that carry the pipe receiver's name.
#pragma once

#include <chrono>
#include <thread>

#include "bqltest/ThreadNames.h"

inline int ReceiverThreadCount() { return bqltest::threadsNamed("bql-pipe-rx"); }

// The count once it is `expected`, or whatever it is after `limit`: a thread just joined can stay
// listed by the system for a moment after the join has returned.
inline int SettledReceiverThreadCount(int expected, std::chrono::milliseconds limit = std::chrono::seconds(2)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    int count = ReceiverThreadCount();
    while (count != expected && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
        count = ReceiverThreadCount();
    }
    return count;
}
