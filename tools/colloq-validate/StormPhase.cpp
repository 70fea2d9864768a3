#include "StormPhase.h"

#include <memory>
#include <vector>

#include "ClientStorm.h"
#include "EventTally.h"
#include "HeadsetStorm.h"
#include "HubStorm.h"
#include "PluginCycle.h"
#include "StopSignal.h"
#include "StormProblems.h"
#include "ThreadCensus.h"
#include "Timeline.h"
#include "hostharness/HostHarness.h"
#include "hostharness/PluginLibrary.h"

namespace colloqvalidate {

namespace {

using namespace std::chrono_literals;
using hostharness::CallbackSlot;
using hostharness::HarnessStatus;

// The storm's timeline is kept for the simulator parts that record on it, never shown.
class SilentPrinter : public colloqsim::TimelinePrinter {
public:
    void print(const colloqsim::TimelineEvent&) override {}
    void problem(const std::string&) override {}
    void say(const std::string&) override {}
};

// The journal is emptied this often during the storm, so that it does not grow with it.
constexpr auto kJournalClearInterval = 1s;
constexpr auto kActivationTimeout = 10s;
constexpr auto kDeliveryTimeout = 10s;

// Fires onAudioUnmute as a marker: the worker takes events in order, so once its line has come
// every event queued before has been taken too.
bool fireMarker(EventTally& tally) {
    int result = 0;
    if (hostharness::HostHarness::instance().callbacks().fire(CallbackSlot::OnAudioUnmute, {}, &result) !=
        HarnessStatus::Ok) {
        return false;
    }
    tally.noteFired(CallbackSlot::OnAudioUnmute);
    return true;
}

std::string countsText(const TallyCounts& counts) {
    const auto incoming = static_cast<std::size_t>(WorkerEvent::Incoming);
    const auto headset = static_cast<std::size_t>(WorkerEvent::HeadsetReport);
    return std::to_string(counts.producedTotal()) + " client events produced (+" +
           std::to_string(counts.possibleIncoming) + " onIncoming, queued only for untracked calls), " +
           std::to_string(counts.consumedTotal()) + " consumed (incoming " + std::to_string(counts.consumed[incoming]) +
           " of " + std::to_string(counts.produced[incoming]) + ".." +
           std::to_string(counts.produced[incoming] + counts.possibleIncoming) + "), " +
           std::to_string(counts.produced[headset]) + " headset reports sent, " + std::to_string(counts.consumed[headset]) +
           " taken by the worker";
}

class Storm {
public:
    explicit Storm(const StormPhaseSettings& settings)
        : settings_(settings),
          timeline_(std::make_unique<SilentPrinter>(), false),
          headsetDriver_(timeline_),
          problems_(stop_),
          clients_(*tally_, stop_, problems_),
          headsets_(headsetDriver_, *tally_, stop_, problems_),
          hub_(timeline_, *tally_, stop_, problems_) {}

    PhaseReport run();

private:
    std::optional<CheckFailure> prepare(std::vector<std::string>* threadsBefore);
    std::optional<CheckFailure> blow();
    std::optional<CheckFailure> drain();
    std::string figures() const;

    const StormPhaseSettings& settings_;
    hostharness::HostHarness& host_ = hostharness::HostHarness::instance();
    // Shared with the journal's listener, which may still be running when it is removed.
    std::shared_ptr<EventTally> tally_ = std::make_shared<EventTally>();
    colloqsim::Timeline timeline_;
    colloqsim::HeadsetDriver headsetDriver_;
    StopSignal stop_;
    StormProblems problems_;
    ClientStorm clients_;
    HeadsetStorm headsets_;
    HubStorm hub_;
    std::unique_ptr<hostharness::PluginLibrary> plugin_ = std::make_unique<hostharness::PluginLibrary>();
    CycleFigures cycle_;
};

PhaseReport Storm::run() {
    PhaseReport report;
    report.phase = "storm";
    std::vector<std::string> threadsBefore;
    report.failure = prepare(&threadsBefore);
    if (!report.failure) {
        report.failure = blow();
    }
    // Whatever happened, the storm's threads end before the plug-in is stopped.
    stop_.raise();
    clients_.join();
    headsets_.join();
    hub_.join();
    if (!report.failure) {
        report.failure = drain();
    }
    if (plugin_->isInitialized()) {
        PluginCycle cycle(settings_.limits);
        std::optional<CheckFailure> stopped = cycle.finish(*plugin_, threadsBefore, &cycle_, &report.pluginHung);
        if (!report.failure) {
            report.failure = std::move(stopped);
        }
    }
    host_.journal().setListener({});
    if (report.pluginHung) {
        static_cast<void>(plugin_.release());
    } else {
        plugin_->unload();
    }
    headsets_.unplugAll();
    report.figures = figures();
    return report;
}

std::optional<CheckFailure> Storm::prepare(std::vector<std::string>* threadsBefore) {
    host_.reset();
    std::shared_ptr<EventTally> tally = tally_;
    host_.journal().setListener([tally](const hostharness::RecordedCall& call) {
        if (call.call == hostharness::HostCall::Log) {
            tally->noteLogLine(call.text);
        }
    });
    std::string error;
    if (!headsets_.plugResident(&error)) {
        return CheckFailure{"a headset can be plugged in", error};
    }
    *threadsBefore = liveThreadNames();
    if (plugin_->load(settings_.pluginPath) != HarnessStatus::Ok) {
        return CheckFailure{"the plug-in loads", settings_.pluginPath + ": " + plugin_->lastError()};
    }
    if (plugin_->initialize(host_.entryPoint()) != HarnessStatus::Ok) {
        return CheckFailure{"initialize is called", "the harness could not call initialize"};
    }
    // The client names the resident headset as its audio device: the plug-in becomes active.
    hostharness::CallbackArgs device;
    device.device = headsets_.residentClientDevice();
    const HarnessStatus chosen = host_.callbacks().fire(CallbackSlot::OnActiveDeviceChanged, device);
    if (chosen != HarnessStatus::Ok) {
        return CheckFailure{"the callbacks are registered",
                            std::string("onActiveDeviceChanged could not be fired: ") + hostharness::describe(chosen)};
    }
    if (!fireMarker(*tally_) || !tally_->waitUntilWorkedOff(kActivationTimeout)) {
        return CheckFailure{"the plug-in becomes active",
                            "with a headset plugged in and chosen by the client, the worker did not take onAudioUnmute "
                            "within " + std::to_string(kActivationTimeout.count()) + " s"};
    }
    return std::nullopt;
}

std::optional<CheckFailure> Storm::blow() {
    std::string error;
    if (settings_.hub && !hub_.start(settings_.hubSimulatorPath, headsets_.residentPath(), settings_.seed, &error)) {
        return CheckFailure{"the storm's threads start", error};
    }
    if (!headsets_.start(settings_.seed, &error) || !clients_.start(settings_.clientThreads, settings_.seed, &error)) {
        return CheckFailure{"the storm's threads start", error};
    }
    const auto end = std::chrono::steady_clock::now() + settings_.duration;
    while (std::chrono::steady_clock::now() < end && !stop_.waitFor(kJournalClearInterval)) {
        host_.journal().clear();
    }
    return problems_.first();
}

std::optional<CheckFailure> Storm::drain() {
    if (!headsetDriver_.waitIdle(kDeliveryTimeout)) {
        return CheckFailure{"the plug-in takes the headsets' reports", "the runtime did not deliver its events"};
    }
    if (!fireMarker(*tally_)) {
        return CheckFailure{"the callbacks stay registered", "onAudioUnmute could not be fired after the storm"};
    }
    if (!tally_->waitUntilWorkedOff(settings_.drainTimeout)) {
        return CheckFailure{"every event the client produced was consumed",
                            "after " + std::to_string(settings_.drainTimeout.count()) + " s: " +
                                countsText(tally_->counts())};
    }
    const std::string mismatch = EventTally::mismatch(tally_->counts());
    if (!mismatch.empty()) {
        return CheckFailure{"every event the client produced was consumed", mismatch};
    }
    return std::nullopt;
}

// Records the plug-in sent to the hub simulator, as the simulator showed them.
std::size_t recordsToHub(const colloqsim::Timeline& timeline) {
    std::size_t records = 0;
    for (const char* subject : {"headset", "hub"}) {
        for (const colloqsim::TimelineEvent& event : timeline.eventsOf(subject)) {
            records += event.direction == colloqsim::Direction::PluginToHub ? 1 : 0;
        }
    }
    return records;
}

std::string Storm::figures() const {
    return std::to_string(settings_.duration.count()) + " s, " + std::to_string(settings_.clientThreads) +
           " client threads, seed " + std::to_string(settings_.seed) + ": " + std::to_string(clients_.fired()) +
           " callbacks fired, " + countsText(tally_->counts()) + ", " + std::to_string(headsets_.plugs()) +
           " plugs / " + std::to_string(headsets_.unplugs()) + " unplugs, " +
           (settings_.hub ? std::to_string(hub_.starts()) + " hub starts, " + std::to_string(recordsToHub(timeline_)) +
                                  " records to the hub"
                            : std::string("no hub")) +
           ", max uninitialize " + std::to_string(cycle_.maxUninitialize.count()) + " ms, threads " +
           std::to_string(cycle_.threadsBeforeFirst) + " before / " + std::to_string(cycle_.threadsAfterLast) +
           " after" + (cycle_.pipeReceiverStayed ? " (hub pipe receiver kept)" : "");
}

}  // namespace

PhaseReport runStormPhase(const StormPhaseSettings& settings) {
    Storm storm(settings);
    return storm.run();
}

}  // namespace colloqvalidate
