// The main queue: work runs in order, one item at a time, on one thread of its own that
// drainMainQueue ends. On Apple systems the host's main thread serves it.
#include <dispatch/dispatch.h>
#include <pthread.h>

#include <condition_variable>
#include <deque>
#include <exception>
#include <future>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "Misuse.h"
#include "appledouble/AppleDouble.h"
#include "bqlcommon/Mutex.h"

struct dispatch_queue_s {};

namespace appledouble {
namespace {

constexpr const char* kMainQueueThreadName = "dispatch-main";

struct Work {
    void* context;
    dispatch_function_t function;
};

class MainQueue {
public:
    void dispatch(Work work) {
        bql::MutexLock guard(lock);
        pending.push_back(work);
        // While a drain waits, the draining thread runs what arrives, or the drain restarts one.
        if (!worker.joinable() && !draining) {
            start();
        }
        wake.notify_one();
    }

    void drain() {
        std::thread finishing;
        {
            bql::MutexLock guard(lock);
            if (!worker.joinable()) {
                return;
            }
            stopping = true;
            draining = true;
            finishing = std::move(worker);
        }
        wake.notify_one();
        finishing.join();
        bql::MutexLock guard(lock);
        stopping = false;
        draining = false;
        if (!pending.empty()) {
            start();
        }
    }

private:
    // Starts the thread and waits until it runs; a thread that cannot start leaves the work queued
    // for the next dispatch.
    void start() BQL_REQUIRES(lock) {
        std::promise<void> started;
        std::future<void> running = started.get_future();
        try {
            worker = std::thread(&MainQueue::run, this, std::move(started));
        } catch (const std::system_error& failure) {
            reportMisuse("dispatch_async_f", failure.what());
            return;
        }
        running.wait();
    }

    void run(std::promise<void> started) {
        pthread_setname_np(pthread_self(), kMainQueueThreadName);
        started.set_value();
        for (;;) {
            Work work{};
            {
                bql::MutexLock guard(lock);
                while (!stopping && pending.empty()) {
                    guard.wait(wake);
                }
                if (pending.empty()) {
                    return;  // stopping, and everything queued has run
                }
                work = pending.front();
                pending.pop_front();
            }
            try {
                work.function(work.context);
            } catch (...) {
                reportMisuse("main queue", "work threw");
            }
        }
    }

    bql::Mutex lock;
    std::condition_variable wake;
    std::deque<Work> pending BQL_GUARDED_BY(lock);
    bool stopping BQL_GUARDED_BY(lock) = false;
    bool draining BQL_GUARDED_BY(lock) = false;
    std::thread worker BQL_GUARDED_BY(lock);
};

// Never destroyed: work may still be dispatched while the process exits.
MainQueue& mainQueue() {
    static MainQueue* const queue = new MainQueue();
    return *queue;
}

dispatch_queue_s mainQueueHandle;

}  // namespace

void drainMainQueue() { mainQueue().drain(); }

}  // namespace appledouble

extern "C" {

dispatch_queue_t dispatch_get_main_queue(void) { return &appledouble::mainQueueHandle; }

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
    if (queue != &appledouble::mainQueueHandle || work == nullptr) {
        appledouble::reportMisuse(__func__, "only the main queue and non-null work are served here");
        return;
    }
    try {
        appledouble::mainQueue().dispatch(appledouble::Work{context, work});
    } catch (const std::exception& failure) {
        appledouble::reportMisuse(__func__, failure.what());
    }
}

}  // extern "C"
