// The runtime's event thread "vexil-events" and its queue: events raised by any thread are
// delivered here, one at a time and in order, never on the thread that raised them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <thread>

#include "bqlcommon/Mutex.h"

#include "RuntimeEvent.h"

namespace vexil {

class EventDispatcher {
public:
    using Deliver = std::function<void(const RuntimeEvent&)>;
    using Ended = std::function<void()>;

    // `ended` runs on the event thread as its very last work, after its last delivery.
    EventDispatcher(Deliver deliver, Ended ended);
    EventDispatcher(const EventDispatcher&) = delete;
    EventDispatcher& operator=(const EventDispatcher&) = delete;

    // Starts the thread and waits for it to report that it runs. VEXIL_E_REFUSED when the
    // thread cannot be started, or when the caller is the previous event thread, which was
    // stopped from inside a delivery and has not finished yet. start() and stop() are called
    // one at a time (the runtime's lifecycle sees to that).
    int32_t start() BQL_EXCLUDES(mutex_);

    // Discards queued events, wakes the thread and joins it; true then. Called on the event
    // thread itself it only asks the thread to end once the current delivery returns, and
    // gives false; the next start() joins it.
    bool stop() BQL_EXCLUDES(mutex_);

    // Joins a thread that ended after being stopped from inside a delivery. Only once the
    // thread has said its last word (the `ended` callback), and never on that thread.
    void joinEnded();

    // False when the dispatcher is stopped: the event is dropped.
    bool post(RuntimeEvent event) BQL_EXCLUDES(mutex_);

    // True once the queue is empty and no delivery is in progress; false when time ran out.
    bool waitIdle(std::chrono::milliseconds timeout) BQL_EXCLUDES(mutex_);

    bool onEventThread() const BQL_EXCLUDES(mutex_);

private:
    enum class Startup { Pending, Running, Failed };

    void run() BQL_EXCLUDES(mutex_);
    // Marks the previous delivery done, then waits for the next event; nothing once stopped.
    std::optional<RuntimeEvent> next() BQL_EXCLUDES(mutex_);
    void reportStartup(Startup outcome) BQL_EXCLUDES(mutex_);

    const Deliver deliver_;
    const Ended ended_;
    // Touched only by start() and stop(), never concurrently.
    std::thread thread_;

    mutable bql::Mutex mutex_;
    std::condition_variable changed_;
    std::deque<RuntimeEvent> queue_ BQL_GUARDED_BY(mutex_);
    bool accepting_ BQL_GUARDED_BY(mutex_) = false;
    bool stopRequested_ BQL_GUARDED_BY(mutex_) = false;
    bool delivering_ BQL_GUARDED_BY(mutex_) = false;
    Startup startup_ BQL_GUARDED_BY(mutex_) = Startup::Pending;
    std::thread::id threadId_ BQL_GUARDED_BY(mutex_);
};

}  // namespace vexil
