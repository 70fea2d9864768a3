#include "CallPacer.h"

namespace bench {

CallPacer::CallPacer(int threads, int32_t firstId, int64_t callsPerThread, int64_t window)
    : firstId_(firstId), callsPerThread_(callsPerThread), window_(window) {
    for (int i = 0; i < threads; ++i) {
        lanes_.push_back(std::make_unique<Lane>());
    }
}

bool CallPacer::awaitEnded(Lane& lane, int64_t count, std::chrono::steady_clock::time_point deadline) {
    bql::MutexLock lock(lane.mutex);
    while (lane.ended < count) {
        if (!lock.waitUntil(lane.wake, deadline)) {
            return lane.ended >= count;
        }
    }
    return true;
}

bool CallPacer::awaitRoom(int thread, int64_t call, std::chrono::milliseconds timeout) {
    if (window_ <= 0 || call < window_) {
        return true;
    }
    return awaitEnded(*lanes_[static_cast<std::size_t>(thread)], call - window_ + 1,
                      std::chrono::steady_clock::now() + timeout);
}

bool CallPacer::awaitAllEnded(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (auto& lane : lanes_) {
        if (!awaitEnded(*lane, callsPerThread_, deadline)) {
            return false;
        }
    }
    return true;
}

void CallPacer::ended(int32_t callId) {
    const int64_t offset = static_cast<int64_t>(callId) - firstId_;
    if (offset < 0 || offset >= callsPerThread_ * static_cast<int64_t>(lanes_.size())) {
        return;
    }
    Lane& lane = *lanes_[static_cast<std::size_t>(offset / callsPerThread_)];
    {
        bql::MutexLock lock(lane.mutex);
        ++lane.ended;
    }
    lane.wake.notify_one();
}

}  // namespace bench
