// Off Apple systems the main queue is a serial executor of our own: one thread, started with
// the first dispatch, that runs work in order until drainMainQueue() ends it.
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

#include "bqlutil/LogWriter.h"
#include "platform/MainQueue.h"
#include "platform/ThreadName.h"

namespace platform {

namespace {

class SerialExecutor {
public:
    void dispatch(std::function<void()> work) {
        std::lock_guard<std::mutex> guard(mutex);
        pending.push_back(std::move(work));
        // While a drain waits, the draining thread runs what arrives, or drain restarts one.
        if (!worker.joinable() && !draining) {
            worker = std::thread(&SerialExecutor::run, this);
        }
        wake.notify_one();
    }

    void drain() {
        std::thread finishing;
        {
            std::lock_guard<std::mutex> guard(mutex);
            if (!worker.joinable()) {
                return;
            }
            stopping = true;
            draining = true;
            finishing = std::move(worker);
        }
        wake.notify_one();
        finishing.join();
        std::lock_guard<std::mutex> guard(mutex);
        stopping = false;
        draining = false;
        if (!pending.empty()) {
            worker = std::thread(&SerialExecutor::run, this);
        }
    }

private:
    void run() {
        nameCurrentThread("bql-mainqueue");
        std::unique_lock<std::mutex> guard(mutex);
        for (;;) {
            wake.wait(guard, [this] { return stopping || !pending.empty(); });
            if (pending.empty()) {
                return;  // stopping, and everything queued has run
            }
            std::function<void()> work = std::move(pending.front());
            pending.pop_front();
            guard.unlock();
            runSafely(work);
            guard.lock();
        }
    }

    static void runSafely(const std::function<void()>& work) {
        try {
            work();
        } catch (const std::exception& error) {
            LogWriter_error(error.what(), "platform::SerialExecutor::run", "<>");
        } catch (...) {
            LogWriter_error("unknown exception", "platform::SerialExecutor::run", "<>");
        }
    }

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> pending;  // guarded by mutex
    bool stopping = false;                      // guarded by mutex
    bool draining = false;                      // guarded by mutex
    std::thread worker;                         // guarded by mutex
};

// Never destroyed: work may still be dispatched while the process exits.
SerialExecutor& executor() {
    static SerialExecutor* instance = new SerialExecutor();
    return *instance;
}

}  // namespace

void dispatchOnMainQueue(std::function<void()> work) { executor().dispatch(std::move(work)); }

void drainMainQueue() { executor().drain(); }

}  // namespace platform
