#include <algorithm>

#include "Clock.h"
#include "HandoffChain.h"
#include "HubWatch.h"
#include "Phases.h"
#include "ProcessStats.h"

namespace bench {

namespace {

using hostharness::CallbackSlot;

// Paths and their bounds run in alternating chunks, so a noisy stretch of the machine hits both.
constexpr int64_t kChunk = 1000;
// Call ids come round again, as a client's do: the substitute runtime keeps a state for every id it
// saw, and that memory is not the plug-in's.
constexpr int64_t kCallIds = 1000;

// One full call: rings (timed to the runtime's incomingCall), answered on the headset (timed to
// the client's answerCall), connected in the client, ended in the client. "" or what went wrong.
std::string oneCall(PluginSession& session, int32_t id, LatencyRecorder& rings, LatencyRecorder& answers) {
    const int64_t fired = nowNs();
    if (!session.fire(CallbackSlot::OnIncoming, id, kClientRinging)) {
        return "onIncoming could not be fired";
    }
    const auto rang = session.awaitCommand(VEXILCTL_CMD_INCOMING_CALL, id);
    if (!rang) {
        return "no incomingCall reached the runtime for call " + std::to_string(id);
    }
    rings.record(*rang - fired);

    const int64_t pressed = nowNs();
    if (!session.pressAccept(id)) {
        return "the accept button could not be pressed";
    }
    const auto answered = session.awaitAnswer();
    if (!answered) {
        return "the client got no answerCall for call " + std::to_string(id);
    }
    answers.record(*answered - pressed);

    if (!session.fire(CallbackSlot::OnConnected, id, kClientConnected) ||
        !session.awaitCommand(VEXILCTL_CMD_ANSWERED_CALL, id)) {
        return "the connected call did not reach the runtime for call " + std::to_string(id);
    }
    if (!session.fire(CallbackSlot::OnOnHook, id, 0) || !session.awaitCommand(VEXILCTL_CMD_TERMINATE_CALL, id)) {
        return "the ended call did not reach the runtime for call " + std::to_string(id);
    }
    return "";
}

}  // namespace

void runDirectCalls(PluginSession& session, const Options& options, Results& results) {
    const auto events = static_cast<std::size_t>(options.events);
    LatencyRecorder rings(events);
    LatencyRecorder answers(events);
    LatencyRecorder oneHandoff(events);
    LatencyRecorder twoHandoffs(events);
    HandoffChain single("bench-hand1-", 1, oneHandoff);
    HandoffChain twice("bench-hand2-", 2, twoHandoffs);
    const std::string hubsBefore = describeForeignHubs();
    std::string problem = hubsBefore;
    if (problem.empty() && (!single.start() || !twice.start())) {
        problem = "a handoff thread could not be started";
    }

    const int64_t checkpoint = std::max<int64_t>(options.events / 10, 1);
    results.memory.clear();
    session.forgetRecords();
    results.memory.emplace_back(0, residentBytes());
    bool checkpointTaken = false;
    for (int64_t done = 0; problem.empty() && done < options.events;) {
        const int64_t chunk = std::min(kChunk, options.events - done);
        for (int64_t i = 0; i < chunk && problem.empty(); ++i) {
            if (!single.trip(kWaitLimit) || !twice.trip(kWaitLimit)) {
                problem = "a handoff thread stopped answering";
            }
        }
        for (int64_t i = 0; i < chunk && problem.empty(); ++i) {
            problem = oneCall(session, static_cast<int32_t>((done + i) % kCallIds + 1), rings, answers);
        }
        done += chunk;
        session.forgetRecords();
        if ((done >= checkpoint && !checkpointTaken) || done == options.events) {
            checkpointTaken = true;
            results.memory.emplace_back(done, residentBytes());
        }
    }
    single.stop();
    twice.stop();
    // A hub that came up during the run may explain a wait that ran out, or figures that mix modes.
    if (const std::string hubsAfter = describeForeignHubs(); hubsBefore.empty() && !hubsAfter.empty()) {
        problem = problem.empty() ? hubsAfter : problem + "; " + hubsAfter;
    } else if (!problem.empty() && hubsBefore.empty()) {
        problem += " (a hub that came and went switches the plug-in for a while: --hide-other-hubs keeps it out)";
    }
    results.memoryProblem = problem;
    results.paths.push_back(PathFigures{"client callback -> headset command (onIncoming -> incomingCall)",
                                        "bare two-thread mutex + condition-variable handoff", rings.summary(),
                                        oneHandoff.summary(), problem});
    results.paths.push_back(PathFigures{"headset button -> client operation (accept -> answerCall)",
                                        "the same handoff twice (three threads)", answers.summary(),
                                        twoHandoffs.summary(), problem});
}

}  // namespace bench
