// Counts the events the client produced against the events the plug-in's worker consumed.
//
// Each client callback that queues an event for the worker is counted when it has returned;
// the worker writes one line to the client's log for every event it takes, "into
// pluginThread() case: <KIND>", before it looks at anything else, and those lines are counted
// as they arrive. Every kind is exact except the incoming event of onIncoming, which the
// plug-in queues only for a call it does not track yet (a state the client cannot see): its
// count is known only to lie between the exact part (onCallWaiting) and that plus every
// onIncoming fired. Headset reports are counted for the figures only, since the runtime drops
// reports while no session is registered.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <optional>
#include <string>

#include "bqlcommon/Mutex.h"
#include "hostharness/CallbackSlot.h"

namespace colloqvalidate {

enum class WorkerEvent : int {
    Outgoing,
    Incoming,
    Connected,
    Terminated,
    OnHold,
    MuteOn,
    MuteOff,
    HeadsetReport,
};
constexpr std::size_t kWorkerEventKinds = 8;

// The worker's line for the event, e.g. "into pluginThread() case: MUTEON_CALL_EVENT".
const char* workerLine(WorkerEvent event);
// "MUTEON_CALL_EVENT".
const char* workerEventName(WorkerEvent event);
// The event a client log line says the worker took; nothing for any other line.
std::optional<WorkerEvent> workerEventOfLine(const std::string& text);

struct TallyCounts {
    std::array<uint64_t, kWorkerEventKinds> produced{};  // exact counts of what the client queued
    std::array<uint64_t, kWorkerEventKinds> consumed{};  // lines the worker wrote
    uint64_t possibleIncoming = 0;                      // onIncoming fired (queued or not)

    uint64_t producedTotal() const;  // exact kinds, headset reports excluded
    uint64_t consumedTotal() const;  // the same kinds
};

class EventTally {
public:
    // A callback the client fired and that returned; slots that queue nothing are ignored.
    void noteFired(hostharness::CallbackSlot slot) BQL_EXCLUDES(mutex_);
    // A headset report sent to the runtime or the hub (for the figures).
    void noteHeadsetReport() BQL_EXCLUDES(mutex_);
    // A line of the client's log; called on the plug-in's threads.
    void noteLogLine(const std::string& text) BQL_EXCLUDES(mutex_);

    TallyCounts counts() const BQL_EXCLUDES(mutex_);

    // Waits until the worker has taken at least every exactly counted event; false on time-out.
    bool waitUntilWorkedOff(std::chrono::milliseconds timeout) BQL_EXCLUDES(mutex_);
    // Waits until fewer than `limit` exactly counted events are still queued; false on time-out.
    bool waitForBacklogBelow(uint64_t limit, std::chrono::milliseconds timeout) BQL_EXCLUDES(mutex_);

    // What does not add up, "" when every kind does: exact kinds must match, the incoming
    // count must lie within its bounds.
    static std::string mismatch(const TallyCounts& counts);

private:
    static uint64_t backlog(const TallyCounts& counts);

    mutable bql::Mutex mutex_;
    std::condition_variable changed_;
    TallyCounts counts_ BQL_GUARDED_BY(mutex_);
};

}  // namespace colloqvalidate
