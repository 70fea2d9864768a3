// Every sample of one path, kept in a vector sized up front so that recording never allocates,
// and the percentiles read off the sorted samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct LatencySummary {
    std::size_t count = 0;
    double p50Us = 0;
    double p99Us = 0;
    double p999Us = 0;
    double maxUs = 0;
};

class LatencyRecorder {
public:
    explicit LatencyRecorder(std::size_t capacity);

    // Drops the sample once the capacity is reached, so a longer run never reallocates.
    void record(int64_t nanoseconds);
    std::size_t count() const { return used_; }
    LatencySummary summary() const;

private:
    std::vector<int64_t> samples_;
    std::size_t used_ = 0;
};

}  // namespace bench
