#include "LatencyRecorder.h"

#include <algorithm>

namespace bench {

namespace {

double pick(const std::vector<int64_t>& sorted, double fraction) {
    const auto last = static_cast<double>(sorted.size() - 1);
    const auto index = static_cast<std::size_t>(fraction * last + 0.5);
    return static_cast<double>(sorted[std::min(index, sorted.size() - 1)]) / 1000.0;
}

}  // namespace

LatencyRecorder::LatencyRecorder(std::size_t capacity) : samples_(capacity, 0) {}

void LatencyRecorder::record(int64_t nanoseconds) {
    if (used_ < samples_.size()) {
        samples_[used_++] = nanoseconds;
    }
}

LatencySummary LatencyRecorder::summary() const {
    LatencySummary result;
    result.count = used_;
    if (used_ == 0) {
        return result;
    }
    std::vector<int64_t> sorted(samples_.begin(), samples_.begin() + static_cast<std::ptrdiff_t>(used_));
    std::sort(sorted.begin(), sorted.end());
    result.p50Us = pick(sorted, 0.50);
    result.p99Us = pick(sorted, 0.99);
    result.p999Us = pick(sorted, 0.999);
    result.maxUs = static_cast<double>(sorted.back()) / 1000.0;
    return result;
}

}  // namespace bench
