// Holds a group of threads until all are running, so a throughput run starts them together.
#pragma once

#include <condition_variable>

#include "bqlcommon/Mutex.h"

namespace bench {

class StartGate {
public:
    void open() BQL_EXCLUDES(mutex_) {
        {
            bql::MutexLock lock(mutex_);
            open_ = true;
        }
        opened_.notify_all();
    }

    void waitOpen() BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        while (!open_) {
            lock.wait(opened_);
        }
    }

private:
    bql::Mutex mutex_;
    std::condition_variable opened_;
    bool open_ BQL_GUARDED_BY(mutex_) = false;
};

}  // namespace bench
