// The first thing that went wrong during the storm, reported by any of its threads; noting one
// ends the storm.
#pragma once

#include <optional>

#include "PhaseReport.h"
#include "StopSignal.h"
#include "bqlcommon/Mutex.h"

namespace colloqvalidate {

class StormProblems {
public:
    explicit StormProblems(StopSignal& stop) : stop_(stop) {}

    // Keeps the first failure only, and raises the stop.
    void note(CheckFailure failure) BQL_EXCLUDES(mutex_) {
        {
            bql::MutexLock lock(mutex_);
            if (!first_) {
                first_ = std::move(failure);
            }
        }
        stop_.raise();
    }

    std::optional<CheckFailure> first() const BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        return first_;
    }

private:
    StopSignal& stop_;
    mutable bql::Mutex mutex_;
    std::optional<CheckFailure> first_ BQL_GUARDED_BY(mutex_);
};

}  // namespace colloqvalidate
