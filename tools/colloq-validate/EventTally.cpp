#include "EventTally.h"

#include <algorithm>

namespace colloqvalidate {

namespace {

using hostharness::CallbackSlot;

struct KindText {
    const char* name;
    const char* line;
};

constexpr std::array<KindText, kWorkerEventKinds> kKinds = {{
    {"OUTGOING_CALL_EVENT", "into pluginThread() case: OUTGOING_CALL_EVENT"},
    {"INCOMING_CALL_EVENT", "into pluginThread() case: INCOMING_CALL_EVENT"},
    {"CONNECTED_CALL_EVENT", "into pluginThread() case: CONNECTED_CALL_EVENT"},
    {"TERMINATED_CALL_EVENT", "into pluginThread() case: TERMINATED_CALL_EVENT"},
    {"ON_HOLD_CALL_EVENT", "into pluginThread() case: ON_HOLD_CALL_EVENT"},
    {"MUTEON_CALL_EVENT", "into pluginThread() case: MUTEON_CALL_EVENT"},
    {"MUTEOFF_CALL_EVENT", "into pluginThread() case: MUTEOFF_CALL_EVENT"},
    {"VEXIL_CALL_EVENT", "into pluginThread() case: VEXIL_CALL_EVENT"},
}};

std::size_t index(WorkerEvent event) { return static_cast<std::size_t>(event); }

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The event a callback queues when it queues exactly one.
std::optional<WorkerEvent> exactEventOf(CallbackSlot slot) {
    switch (slot) {
        case CallbackSlot::OnRemoteAlerting:
        case CallbackSlot::OnReorder:
            return WorkerEvent::Outgoing;
        case CallbackSlot::OnCallWaiting:
            return WorkerEvent::Incoming;
        case CallbackSlot::OnConnected:
            return WorkerEvent::Connected;
        case CallbackSlot::OnBusy:
        case CallbackSlot::OnOnHook:
            return WorkerEvent::Terminated;
        case CallbackSlot::OnHold:
            return WorkerEvent::OnHold;
        case CallbackSlot::OnAudioMute:
            return WorkerEvent::MuteOn;
        case CallbackSlot::OnAudioUnmute:
            return WorkerEvent::MuteOff;
        default:
            return std::nullopt;
    }
}

}  // namespace

const char* workerLine(WorkerEvent event) { return kKinds[index(event)].line; }
const char* workerEventName(WorkerEvent event) { return kKinds[index(event)].name; }

std::optional<WorkerEvent> workerEventOfLine(const std::string& text) {
    for (std::size_t i = 0; i < kKinds.size(); ++i) {
        if (endsWith(text, kKinds[i].line)) {
            return static_cast<WorkerEvent>(i);
        }
    }
    return std::nullopt;
}

uint64_t TallyCounts::producedTotal() const {
    uint64_t total = 0;
    for (std::size_t i = 0; i < kWorkerEventKinds; ++i) {
        total += i == index(WorkerEvent::HeadsetReport) ? 0 : produced[i];
    }
    return total;
}

uint64_t TallyCounts::consumedTotal() const {
    uint64_t total = 0;
    for (std::size_t i = 0; i < kWorkerEventKinds; ++i) {
        total += i == index(WorkerEvent::HeadsetReport) ? 0 : consumed[i];
    }
    return total;
}

void EventTally::noteFired(CallbackSlot slot) {
    const std::optional<WorkerEvent> event = exactEventOf(slot);
    if (!event && slot != CallbackSlot::OnIncoming) {
        return;
    }
    bql::MutexLock lock(mutex_);
    if (event) {
        ++counts_.produced[index(*event)];
    } else {
        ++counts_.possibleIncoming;
    }
}

void EventTally::noteHeadsetReport() {
    bql::MutexLock lock(mutex_);
    ++counts_.produced[index(WorkerEvent::HeadsetReport)];
}

void EventTally::noteLogLine(const std::string& text) {
    const std::optional<WorkerEvent> event = workerEventOfLine(text);
    if (!event) {
        return;
    }
    {
        bql::MutexLock lock(mutex_);
        ++counts_.consumed[index(*event)];
    }
    changed_.notify_all();
}

TallyCounts EventTally::counts() const {
    bql::MutexLock lock(mutex_);
    return counts_;
}

uint64_t EventTally::backlog(const TallyCounts& counts) {
    uint64_t waiting = 0;
    for (std::size_t i = 0; i < kWorkerEventKinds; ++i) {
        if (i != index(WorkerEvent::HeadsetReport) && counts.produced[i] > counts.consumed[i]) {
            waiting += counts.produced[i] - counts.consumed[i];
        }
    }
    return waiting;
}

bool EventTally::waitUntilWorkedOff(std::chrono::milliseconds timeout) { return waitForBacklogBelow(1, timeout); }

bool EventTally::waitForBacklogBelow(uint64_t limit, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bql::MutexLock lock(mutex_);
    while (backlog(counts_) >= limit) {
        if (!lock.waitUntil(changed_, deadline) && backlog(counts_) >= limit) {
            return false;
        }
    }
    return true;
}

std::string EventTally::mismatch(const TallyCounts& counts) {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : "; ") + part; };
    for (std::size_t i = 0; i < kWorkerEventKinds; ++i) {
        const auto event = static_cast<WorkerEvent>(i);
        const uint64_t produced = counts.produced[i];
        const uint64_t consumed = counts.consumed[i];
        if (event == WorkerEvent::HeadsetReport) {
            continue;
        }
        if (event == WorkerEvent::Incoming) {
            if (consumed < produced || consumed > produced + counts.possibleIncoming) {
                add(std::string(workerEventName(event)) + ": " + std::to_string(consumed) + " consumed, expected " +
                    std::to_string(produced) + " to " + std::to_string(produced + counts.possibleIncoming));
            }
        } else if (consumed != produced) {
            add(std::string(workerEventName(event)) + ": " + std::to_string(produced) + " produced, " +
                std::to_string(consumed) + " consumed");
        }
    }
    return text;
}

}  // namespace colloqvalidate
