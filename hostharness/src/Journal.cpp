#include "hostharness/Journal.h"

#include <algorithm>
#include <utility>

namespace hostharness {

uint64_t Journal::append(RecordedCall call) {
    call.thread = std::this_thread::get_id();
    uint64_t sequence = 0;
    std::shared_ptr<const Listener> listener;
    {
        bql::MutexLock lock(mutex_);
        sequence = nextSequence_++;
        call.sequence = sequence;
        entries_.push_back(call);
        listener = listener_;
    }
    appended_.notify_all();
    if (listener) {
        (*listener)(call);
    }
    return sequence;
}

std::vector<RecordedCall> Journal::entries() const {
    bql::MutexLock lock(mutex_);
    return entries_;
}

std::vector<RecordedCall> Journal::entriesOf(HostCall call) const {
    bql::MutexLock lock(mutex_);
    std::vector<RecordedCall> selected;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(selected),
                 [call](const RecordedCall& entry) { return entry.call == call; });
    return selected;
}

std::size_t Journal::countOf(HostCall call) const {
    bql::MutexLock lock(mutex_);
    return static_cast<std::size_t>(std::count_if(entries_.begin(), entries_.end(),
                                                  [call](const RecordedCall& entry) { return entry.call == call; }));
}

uint64_t Journal::lastSequence() const {
    bql::MutexLock lock(mutex_);
    return entries_.empty() ? 0 : entries_.back().sequence;
}

HarnessStatus Journal::waitFor(const CallExpectation& expected, std::chrono::milliseconds timeout,
                               RecordedCall* matched) {
    if (!isKnownHostCall(expected.call) || expected.call == HostCall::Log) {
        return HarnessStatus::UnknownSlot;
    }
    return waitUntil([&expected](const RecordedCall& entry) { return matches(expected, entry); }, timeout, matched);
}

HarnessStatus Journal::waitForLog(const LogExpectation& expected, std::chrono::milliseconds timeout,
                                  RecordedCall* matched) {
    return waitUntil([&expected](const RecordedCall& entry) { return matches(expected, entry); }, timeout, matched);
}

void Journal::clear() {
    bql::MutexLock lock(mutex_);
    entries_.clear();
    nextSequence_ = 1;
}

void Journal::setListener(Listener listener) {
    std::shared_ptr<const Listener> replacement;
    if (listener) {
        replacement = std::make_shared<const Listener>(std::move(listener));
    }
    bql::MutexLock lock(mutex_);
    listener_ = std::move(replacement);
}

HarnessStatus Journal::waitUntil(const Predicate& wanted, std::chrono::milliseconds timeout, RecordedCall* matched) {
    // A day is "for ever" for a test and keeps the deadline arithmetic from overflowing.
    const auto bounded =
        std::clamp(timeout, std::chrono::milliseconds::zero(), std::chrono::milliseconds(std::chrono::hours(24)));
    const auto deadline = std::chrono::steady_clock::now() + bounded;
    bql::MutexLock lock(mutex_);
    for (;;) {
        if (const RecordedCall* found = findLocked(wanted)) {
            if (matched != nullptr) {
                *matched = *found;
            }
            return HarnessStatus::Ok;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return HarnessStatus::TimedOut;
        }
        lock.waitUntil(appended_, deadline);
    }
}

const RecordedCall* Journal::findLocked(const Predicate& wanted) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), wanted);
    return found == entries_.end() ? nullptr : &*found;
}

}  // namespace hostharness
