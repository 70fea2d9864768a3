// The ordered record of every interaction of a run: it stamps each with the milliseconds since
// the start, prints it, and lets a scenario wait for one that matches an expectation.
// Thread-safe: the client's thread, the plug-in's threads, the runtime watcher and the hub
// reader all record while the scenario waits.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TimelineEvent.h"
#include "TimelinePrinter.h"
#include "bqlcommon/Mutex.h"

namespace colloqsim {

class Timeline {
public:
    // Log lines are kept for expectations either way, but printed only with showLog.
    Timeline(std::unique_ptr<TimelinePrinter> printer, bool showLog);

    void record(TimelineEvent event) BQL_EXCLUDES(mutex_);
    void note(const std::string& text) BQL_EXCLUDES(mutex_);
    void problem(const std::string& text) BQL_EXCLUDES(mutex_);
    // Text for the person at the prompt, in the same stream and never inside another line.
    void say(const std::string& text) BQL_EXCLUDES(mutex_);

    // Waits for the oldest event that matches and that no earlier wait took; takes it. Nothing
    // when none comes in time.
    std::optional<TimelineEvent> take(const EventPattern& pattern, std::chrono::milliseconds timeout)
        BQL_EXCLUDES(mutex_);
    // The events of a subject, oldest first, for saying what happened instead.
    std::vector<TimelineEvent> eventsOf(const std::string& subject) const BQL_EXCLUDES(mutex_);
    // How many events of the client, the plug-in and the headsets there were so far; it stays
    // the same while nothing happens between them.
    std::size_t activity() const BQL_EXCLUDES(mutex_);

private:
    struct Kept {
        TimelineEvent event;
        bool taken = false;
    };

    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    const bool showLog_;
    mutable bql::Mutex mutex_;
    std::condition_variable recorded_;
    std::unique_ptr<TimelinePrinter> printer_ BQL_PT_GUARDED_BY(mutex_);
    std::vector<Kept> events_ BQL_GUARDED_BY(mutex_);
};

}  // namespace colloqsim
