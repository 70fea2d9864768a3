#include "NamePhase.h"

#include <cstdio>
#include <memory>
#include <optional>

#include "NameHeadsets.h"
#include "TimedDeviceChange.h"
#include "hostharness/HostHarness.h"
#include "hostharness/PluginLibrary.h"
#include "hostharness/SmallStackThread.h"

namespace colloqvalidate {

namespace {

using hostharness::HarnessStatus;

std::string millisecondsText(std::chrono::microseconds elapsed) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(elapsed.count()) / 1000.0);
    return text;
}

class NameRun {
public:
    explicit NameRun(const NamePhaseSettings& settings) : settings_(settings) {}

    PhaseReport run();

private:
    std::optional<CheckFailure> prepare(std::vector<std::string>* threadsBefore);
    std::optional<CheckFailure> handAll();
    // Hands one identifier; `what` says which for a report.
    std::optional<CheckFailure> handOver(const std::string& identifier, const std::string& what,
                                         DeviceChangeTiming* timing);
    // The client chooses headset `number` by its valid name; `check` is the check's name.
    std::optional<CheckFailure> choose(int number, const std::string& check, const std::string& when);
    std::string figures() const;

    const NamePhaseSettings& settings_;
    hostharness::HostHarness& host_ = hostharness::HostHarness::instance();
    std::unique_ptr<hostharness::PluginLibrary> plugin_ = std::make_unique<hostharness::PluginLibrary>();
    NameHeadsets headsets_;
    bool hung_ = false;
    bool finished_ = false;  // uninitialize was called
    std::size_t handed_ = 0;
    std::size_t confirmed_ = 0;
    std::chrono::microseconds worst_{0};
    std::string worstLabel_;
    CycleFigures cycle_;
};

PhaseReport NameRun::run() {
    PhaseReport report;
    report.phase = "names";
    std::vector<std::string> threadsBefore;
    report.failure = prepare(&threadsBefore);
    if (!report.failure) {
        report.failure = handAll();
    }
    if (hung_) {
        // A thread is still inside the plug-in: it is neither stopped, unloaded nor destroyed.
        report.pluginHung = true;
        static_cast<void>(plugin_.release());
        report.figures = figures();
        return report;
    }
    if (plugin_->isInitialized()) {
        finished_ = true;
        PluginCycle cycle(settings_.limits);
        std::optional<CheckFailure> stopped = cycle.finish(*plugin_, threadsBefore, &cycle_, &report.pluginHung);
        if (!report.failure) {
            report.failure = std::move(stopped);
        }
    }
    if (report.pluginHung) {
        static_cast<void>(plugin_.release());
    } else {
        plugin_->unload();
        headsets_.unplug();
    }
    report.figures = figures();
    return report;
}

std::optional<CheckFailure> NameRun::prepare(std::vector<std::string>* threadsBefore) {
    host_.reset();
    const std::string refused = headsets_.plug();
    if (!refused.empty()) {
        return CheckFailure{"a headset can be plugged in", refused};
    }
    *threadsBefore = liveThreadNames();
    if (plugin_->load(settings_.pluginPath) != HarnessStatus::Ok) {
        return CheckFailure{"the plug-in loads", settings_.pluginPath + ": " + plugin_->lastError()};
    }
    int result = -1;
    const HarnessStatus status = plugin_->initialize(host_.entryPoint(), &result);
    if (status != HarnessStatus::Ok) {
        return CheckFailure{"initialize is called",
                            "the harness could not call initialize: " + std::string(hostharness::describe(status))};
    }
    if (result != 0) {
        return CheckFailure{"initialize succeeds", "initialize returned " + std::to_string(result) +
                                                       " with two headsets plugged in and no hub"};
    }
    return choose(1, "the client's device selects the headset", "before any hostile name");
}

std::optional<CheckFailure> NameRun::handAll() {
    const std::size_t total = settings_.names.size();
    for (std::size_t i = 0; i < total; ++i) {
        const hostharness::HostileDeviceName& name = settings_.names[i];
        const std::string what = "the name '" + name.label + "' (" + std::to_string(i + 1) + " of " +
                                 std::to_string(total) + ", " + std::to_string(name.identifier.size()) + " bytes)";
        DeviceChangeTiming timing;
        if (std::optional<CheckFailure> failure = handOver(name.identifier, what, &timing)) {
            return failure;
        }
        ++handed_;
        if (worstLabel_.empty() || timing.elapsed > worst_) {
            worst_ = timing.elapsed;
            worstLabel_ = name.label;
        }
        // Whatever the plug-in logged about the name goes, so that the journal does not grow.
        host_.journal().clear();
        if (std::optional<CheckFailure> failure = choose(
                headsets_.inactiveNumber(), "next valid name selects the headset", "after '" + name.label + "'")) {
            return failure;
        }
        ++confirmed_;
    }
    return std::nullopt;
}

std::optional<CheckFailure> NameRun::handOver(const std::string& identifier, const std::string& what,
                                              DeviceChangeTiming* timing) {
    *timing = deviceChangeWithin(identifier, settings_.callbackLimit);
    if (!timing->started) {
        return CheckFailure{
            "a thread with a " + std::to_string(hostharness::kSecondaryThreadStack / 1024) + " KiB stack starts",
            "the system refused the thread that was to hand " + what};
    }
    if (!timing->returned) {
        hung_ = true;
        return CheckFailure{
            "onActiveDeviceChanged returns within " + std::to_string(settings_.callbackLimit.count()) + " ms",
            "onActiveDeviceChanged had not returned after " + millisecondsText(timing->elapsed) + " with " + what};
    }
    if (timing->status != HarnessStatus::Ok) {
        return CheckFailure{"the callbacks are registered", "onActiveDeviceChanged could not be fired with " + what +
                                                                ": " + hostharness::describe(timing->status)};
    }
    return std::nullopt;
}

std::optional<CheckFailure> NameRun::choose(int number, const std::string& check, const std::string& when) {
    const NameHeadset& headset = headsets_.headset(number);
    const std::string what =
        "the valid name of headset " + std::to_string(number) + " (" + headset.productName + ") " + when;
    DeviceChangeTiming timing;
    if (std::optional<CheckFailure> failure = handOver(headsets_.clientIdentifier(number), what, &timing)) {
        return failure;
    }
    std::string active;
    if (!headsets_.waitUntilActive(number, settings_.selectionTimeout, &active)) {
        return CheckFailure{check, "the client chose headset " + std::to_string(number) + " (" + headset.productName +
                                       ", " + headset.path + ") " + when +
                                       ", but the runtime's active device was still " +
                                       (active.empty() ? std::string("none") : active) + " after " +
                                       std::to_string(settings_.selectionTimeout.count()) + " ms"};
    }
    return std::nullopt;
}

std::string NameRun::figures() const {
    std::string text = std::to_string(handed_) + " of " + std::to_string(settings_.names.size()) +
                       " hostile names handed on a " + std::to_string(hostharness::kSecondaryThreadStack / 1024) +
                       " KiB stack";
    if (handed_ > 0) {
        text += ", worst onActiveDeviceChanged " + millisecondsText(worst_) + " ('" + worstLabel_ + "')";
    }
    text += ", " + std::to_string(confirmed_) + " selections after them confirmed";
    if (finished_) {
        text += ", uninitialize " + std::to_string(cycle_.maxUninitialize.count()) + " ms, threads " +
                std::to_string(cycle_.threadsBeforeFirst) + " before / " + std::to_string(cycle_.threadsAfterLast) +
                " after" + (cycle_.pipeReceiverStayed ? " (hub pipe receiver kept)" : "");
    }
    return text;
}

}  // namespace

PhaseReport runNamePhase(const NamePhaseSettings& settings) {
    NameRun run(settings);
    return run.run();
}

}  // namespace colloqvalidate
