#include "Timeline.h"

#include <utility>

namespace colloqsim {

Timeline::Timeline(std::unique_ptr<TimelinePrinter> printer, bool showLog)
    : showLog_(showLog), printer_(std::move(printer)) {}

void Timeline::record(TimelineEvent event) {
    event.milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_).count();
    {
        bql::MutexLock lock(mutex_);
        event.sequence = events_.size() + 1;
        // Printed under the lock so that lines come out in the order of their stamps.
        if (event.direction != Direction::ClientLog || showLog_) {
            printer_->print(event);
        }
        events_.push_back(Kept{std::move(event), false});
    }
    recorded_.notify_all();
}

void Timeline::note(const std::string& text) {
    TimelineEvent event;
    event.direction = Direction::Note;
    event.text = text;
    record(std::move(event));
}

void Timeline::problem(const std::string& text) {
    bql::MutexLock lock(mutex_);
    printer_->problem(text);
}

void Timeline::say(const std::string& text) {
    bql::MutexLock lock(mutex_);
    printer_->say(text);
}

std::optional<TimelineEvent> Timeline::take(const EventPattern& pattern, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bql::MutexLock lock(mutex_);
    for (;;) {
        for (Kept& kept : events_) {
            if (!kept.taken && pattern.matches(kept.event)) {
                kept.taken = true;
                return kept.event;
            }
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return std::nullopt;
        }
        lock.waitUntil(recorded_, deadline);
    }
}

std::vector<TimelineEvent> Timeline::eventsOf(const std::string& subject) const {
    bql::MutexLock lock(mutex_);
    std::vector<TimelineEvent> selected;
    for (const Kept& kept : events_) {
        if (kept.event.subject == subject) {
            selected.push_back(kept.event);
        }
    }
    return selected;
}

std::size_t Timeline::activity() const {
    bql::MutexLock lock(mutex_);
    std::size_t count = 0;
    for (const Kept& kept : events_) {
        const std::string& subject = kept.event.subject;
        if (subject == "client" || subject == "headset" || subject == "plugin" || subject == "callback") {
            ++count;
        }
    }
    return count;
}

}  // namespace colloqsim
