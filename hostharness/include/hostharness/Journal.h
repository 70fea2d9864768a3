// The ordered record of every call a plug-in made into the client, and waiting for one to come.
// Thread-safe: the plug-in appends from its own threads while a test reads and waits.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "bqlcommon/Mutex.h"
#include "hostharness/Expectation.h"
#include "hostharness/HarnessStatus.h"
#include "hostharness/RecordedCall.h"

namespace hostharness {

class Journal {
public:
    // Told about every call right after it is journalled, on the plug-in's thread that made it,
    // with no lock held; it must return quickly (a host that reacts hands the call to its own
    // thread). A listener already running when it is replaced or removed may still finish.
    using Listener = std::function<void(const RecordedCall&)>;

    // Stamps the call with the next sequence number and the calling thread, keeps it and wakes
    // every waiter. Returns the sequence number.
    uint64_t append(RecordedCall call) BQL_EXCLUDES(mutex_);

    std::vector<RecordedCall> entries() const BQL_EXCLUDES(mutex_);
    std::vector<RecordedCall> entriesOf(HostCall call) const BQL_EXCLUDES(mutex_);
    std::size_t countOf(HostCall call) const BQL_EXCLUDES(mutex_);
    // The sequence number of the latest entry, 0 when empty.
    uint64_t lastSequence() const BQL_EXCLUDES(mutex_);

    // Waits until a matching call is in the journal (one recorded before the wait counts too).
    // Ok and the call in *matched (may be null) when it came; TimedOut otherwise; UnknownSlot
    // for an operation the client does not have, and for Log (use waitForLog).
    HarnessStatus waitFor(const CallExpectation& expected, std::chrono::milliseconds timeout,
                          RecordedCall* matched = nullptr) BQL_EXCLUDES(mutex_);
    // The same for a line of the client's log.
    HarnessStatus waitForLog(const LogExpectation& expected, std::chrono::milliseconds timeout,
                             RecordedCall* matched = nullptr) BQL_EXCLUDES(mutex_);

    // Forgets every entry; the next one is number 1 again. The listener stays.
    void clear() BQL_EXCLUDES(mutex_);

    // Replaces the listener; an empty function removes it.
    void setListener(Listener listener) BQL_EXCLUDES(mutex_);

private:
    using Predicate = std::function<bool(const RecordedCall&)>;
    HarnessStatus waitUntil(const Predicate& wanted, std::chrono::milliseconds timeout, RecordedCall* matched)
        BQL_EXCLUDES(mutex_);
    const RecordedCall* findLocked(const Predicate& wanted) const BQL_REQUIRES(mutex_);

    mutable bql::Mutex mutex_;
    std::condition_variable appended_;
    std::vector<RecordedCall> entries_ BQL_GUARDED_BY(mutex_);
    uint64_t nextSequence_ BQL_GUARDED_BY(mutex_) = 1;
    std::shared_ptr<const Listener> listener_ BQL_GUARDED_BY(mutex_);
};

}  // namespace hostharness
