// One clock for every timestamp, also across processes: CLOCK_MONOTONIC is system-wide, so a
// stamp taken in the hub process compares with one taken here.
#pragma once

#include <time.h>

#include <cstdint>

namespace bench {

inline int64_t nowNs() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000000000LL + now.tv_nsec;
}

}  // namespace bench
