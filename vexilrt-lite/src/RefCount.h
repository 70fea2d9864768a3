// The atomic reference count of an object handed out through an interface with Release().
#pragma once

#include <atomic>
#include <cstdint>

namespace vexil {

class RefCount {
public:
    // The creator holds the first reference.
    RefCount() = default;
    RefCount(const RefCount&) = delete;
    RefCount& operator=(const RefCount&) = delete;

    void add() { count_.fetch_add(1, std::memory_order_relaxed); }

    // True when the last reference went: the owner deletes itself then.
    bool drop() { return count_.fetch_sub(1, std::memory_order_acq_rel) == 1; }

private:
    std::atomic<int32_t> count_{1};
};

}  // namespace vexil
