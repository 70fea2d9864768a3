#include <algorithm>
#include <exception>
#include <memory>

#include "Clock.h"
#include "HubWatch.h"
#include "Phases.h"
#include "hostharness/HostHarness.h"
#include "hostharness/HostileDeviceNames.h"
#include "hostharness/SmallStackThread.h"

namespace bench {

namespace {

using hostharness::CallbackArgs;
using hostharness::CallbackSlot;
using hostharness::HarnessStatus;

// A valid name of a device the runtime does not list: the whole walk and match, nothing hostile.
constexpr const char* kUnlistedDevice = "AppleUSBAudioEngine:Acme:Desk Speaker 9";
constexpr const char* kSingleBytes = "single bytes";

// "nested repetitions, 4 KiB" and "nested repetitions" are one group; the 255 one-byte names are
// another, so that they do not bury the rest of the report.
std::string groupOf(const std::string& label) {
    if (label.rfind("byte 0x", 0) == 0) {
        return kSingleBytes;
    }
    return label.substr(0, label.find(','));
}

struct Group {
    std::string name;
    std::size_t names = 0;
    std::unique_ptr<LatencyRecorder> times;
    int64_t worstNs = -1;
    std::string worstLabel;
};

// Fires onActiveDeviceChanged with `args` on a thread with the client's secondary stack; the time
// runs from just before the fire to its return, so neither the thread's start nor the copy of the
// identifier is counted. "" or what went wrong.
std::string timeOnSmallStack(const CallbackArgs& args, int64_t* elapsedNs) {
    HarnessStatus fired = HarnessStatus::NotRegistered;
    HarnessStatus started = HarnessStatus::Ok;
    try {
        started = hostharness::runOnThreadWithStack(hostharness::kSecondaryThreadStack, [&] {
            const int64_t before = nowNs();
            fired = hostharness::HostHarness::instance().callbacks().fire(CallbackSlot::OnActiveDeviceChanged, args);
            *elapsedNs = nowNs() - before;
        });
    } catch (const std::exception& error) {
        return std::string("the callback's thread threw: ") + error.what();
    }
    if (started != HarnessStatus::Ok) {
        return std::string("no thread with a 512 KiB stack: ") + hostharness::describe(started);
    }
    if (fired != HarnessStatus::Ok) {
        return std::string("onActiveDeviceChanged could not be fired: ") + hostharness::describe(fired);
    }
    return "";
}

// Every name starts from the headset chosen, as the client's last valid choice left it.
std::string timeFromHeadset(PluginSession& session, const CallbackArgs& args, int64_t* elapsedNs) {
    std::string problem = timeOnSmallStack(args, elapsedNs);
    if (problem.empty() && !session.chooseHeadset()) {
        problem = "the headset could not be chosen again";
    }
    return problem;
}

}  // namespace

void runDeviceNames(PluginSession& session, const Options& options, Results& results) {
    DeviceNameFigures& figures = results.deviceNames;
    figures.rounds = options.nameRounds;
    figures.boundIdentifier = kUnlistedDevice;

    const std::vector<hostharness::HostileDeviceName> names = hostharness::hostileDeviceNames();
    std::vector<CallbackArgs> hostile(names.size());
    std::vector<std::size_t> groupOfName(names.size());
    std::vector<Group> groups;
    for (std::size_t i = 0; i < names.size(); ++i) {
        hostile[i].device = names[i].identifier;
        const std::string group = groupOf(names[i].label);
        auto found = std::find_if(groups.begin(), groups.end(), [&](const Group& g) { return g.name == group; });
        if (found == groups.end()) {
            groups.push_back(Group{group, 0, nullptr, -1, ""});
            found = groups.end() - 1;
        }
        ++found->names;
        groupOfName[i] = static_cast<std::size_t>(found - groups.begin());
    }
    const auto rounds = static_cast<std::size_t>(options.nameRounds);
    for (Group& group : groups) {
        group.times = std::make_unique<LatencyRecorder>(group.names * rounds);
    }
    LatencyRecorder bound(names.size() * rounds);
    CallbackArgs unlisted;
    unlisted.device = kUnlistedDevice;

    const std::string hubsBefore = describeForeignHubs();
    std::string problem = hubsBefore;
    int64_t worstNs = -1;
    // Rounds outside, names inside, and the bound beside each name, so that a noisy stretch of the
    // machine hits one round of everything rather than every round of one name.
    for (std::size_t round = 0; round < rounds && problem.empty(); ++round) {
        for (std::size_t i = 0; i < names.size() && problem.empty(); ++i) {
            int64_t boundNs = 0;
            int64_t elapsedNs = 0;
            problem = timeFromHeadset(session, unlisted, &boundNs);
            if (problem.empty()) {
                problem = timeFromHeadset(session, hostile[i], &elapsedNs);
            }
            if (!problem.empty()) {
                problem += " (name: " + names[i].label + ")";
                break;
            }
            bound.record(boundNs);
            Group& group = groups[groupOfName[i]];
            group.times->record(elapsedNs);
            if (elapsedNs > group.worstNs) {
                group.worstNs = elapsedNs;
                group.worstLabel = names[i].label;
            }
            if (elapsedNs > worstNs) {
                worstNs = elapsedNs;
                figures.worstLabel = names[i].label;
            }
        }
    }
    // A hub that came up during the run switches the plug-in away from the runtime it walks.
    if (const std::string hubsAfter = describeForeignHubs(); problem.empty() && !hubsAfter.empty()) {
        problem = hubsAfter;
    }

    figures.lowerBound = bound.summary();
    for (const Group& group : groups) {
        figures.groups.push_back(NameGroupFigures{group.name, group.names, group.times->summary(), group.worstLabel});
    }
    figures.worstUs = static_cast<double>(std::max<int64_t>(worstNs, 0)) / 1000.0;
    figures.problem = problem;
    figures.measured = true;
}

}  // namespace bench
