#include <algorithm>

#include "Clock.h"
#include "HandoffChain.h"
#include "HubProcess.h"
#include "HubWatch.h"
#include "Phases.h"
#include "RawReceiver.h"

namespace bench {

namespace {

using hostharness::CallbackSlot;
using namespace std::chrono_literals;

constexpr int64_t kChunk = 1000;
constexpr auto kHubWait = std::chrono::duration_cast<std::chrono::milliseconds>(kWaitLimit);
// Call ids of the hub phase start here, clear of the other phases' ids.
constexpr int32_t kFirstId = 20'000'000;

// The proxy serves once the plug-in asks our hub for the active device when the client chooses
// the headset. The hub check runs every 2 s, so a few rounds may pass before it chose the proxy;
// the plug-in ignores a choice of the device it has already, so each round first chooses another.
bool waitUntilProxyServes(PluginSession& session, HubProcess& hub) {
    for (int round = 0; round < 12; ++round) {
        if (!session.chooseOtherDevice() || !session.chooseHeadset()) {
            return false;
        }
        if (hub.expect(HubMessageKind::DeviceRequest, 1000ms)) {
            return true;
        }
    }
    return false;
}

// One call through the proxy: rings (timed to the hub's receipt of the record), accepted by the
// hub (timed to the client's answerCall), connected and ended in the client.
std::string oneHubCall(PluginSession& session, HubProcess& hub, int32_t id, LatencyRecorder& toHub,
                       LatencyRecorder& fromHub) {
    const int64_t fired = nowNs();
    if (!session.fire(CallbackSlot::OnIncoming, id, kClientRinging)) {
        return "onIncoming could not be fired";
    }
    const auto rang = hub.expect(HubMessageKind::CallRecord, kHubWait, id, COLLOQ_INCOMING_CALL);
    if (!rang) {
        return "the hub got no incoming-call record for call " + std::to_string(id) +
               " (the plug-in left hub mode, or the hub process ended)";
    }
    toHub.record(rang->stampNs - fired);

    if (!hub.send(HubMessage{HubMessageKind::SendAccept, id, 0, 0, 0})) {
        return "the hub process is gone";
    }
    const auto sent = hub.expect(HubMessageKind::Sent, kHubWait, id);
    const auto answered = session.awaitAnswer();
    if (!sent || !answered) {
        return "the client got no answerCall for the hub's accept of call " + std::to_string(id);
    }
    fromHub.record(*answered - sent->stampNs);

    if (!session.fire(CallbackSlot::OnConnected, id, kClientConnected) ||
        !hub.expect(HubMessageKind::CallRecord, kHubWait, id, COLLOQ_ANSWERED_CALL)) {
        return "the hub got no answered-call record for call " + std::to_string(id);
    }
    if (!session.fire(CallbackSlot::OnOnHook, id, 0) ||
        !hub.expect(HubMessageKind::CallRecord, kHubWait, id, COLLOQ_TERMINATE_CALL)) {
        return "the hub got no terminate record for call " + std::to_string(id);
    }
    return "";
}

std::string rawPing(HubProcess& hub, int32_t sequence, LatencyRecorder& raw) {
    const int64_t sent = nowNs();
    if (!hub.sendRecordSized(HubMessage{HubMessageKind::RawPing, sequence, 0, 0, sent})) {
        return "the hub process is gone";
    }
    const auto received = hub.expect(HubMessageKind::RawReceived, kHubWait, sequence);
    if (!received) {
        return "the hub process did not confirm a raw datagram";
    }
    raw.record(received->stampNs - sent);
    return "";
}

}  // namespace

void runHubPaths(PluginSession& session, const Options& options, Results& results) {
    const auto events = static_cast<std::size_t>(options.events);
    LatencyRecorder toHub(events);
    LatencyRecorder fromHub(events);
    LatencyRecorder raw(events);
    LatencyRecorder rawHandoff(events);
    HandoffChain handoff("bench-rawhand-", 1, rawHandoff);

    HubProcess hub;
    std::string problem;
    if (!hub.start(options.hubPath, session.headsetPath())) {
        problem = hub.error();
    } else if (!session.initializeOnly()) {
        problem = "initialize failed";
    } else if (!waitUntilProxyServes(session, hub)) {
        problem = "the plug-in did not switch to hub mode";
    }
    RawReceiver receiver(hub.rawSocket(), handoff);
    if (problem.empty() && (!handoff.start() || !receiver.start())) {
        problem = "a receiving thread could not be started";
    }
    for (int64_t done = 0; problem.empty() && done < options.events;) {
        const int64_t chunk = std::min(kChunk, options.events - done);
        for (int64_t i = 0; i < chunk && problem.empty(); ++i) {
            problem = rawPing(hub, static_cast<int32_t>(done + i), raw);
            if (problem.empty() && !hub.send(HubMessage{HubMessageKind::RawSend, 0, 0, 0, 0})) {
                problem = "the hub process is gone";
            }
            if (problem.empty() && !handoff.awaitTrip(kHubWait)) {
                problem = "no raw datagram came back from the hub process";
            }
        }
        for (int64_t i = 0; i < chunk && problem.empty(); ++i) {
            problem = oneHubCall(session, hub, kFirstId + static_cast<int32_t>(done + i), toHub, fromHub);
        }
        done += chunk;
        session.forgetRecords();
    }
    receiver.stop();
    handoff.stop();
    session.uninitialize();
    hub.stop();
    session.forgetRecords();
    results.paths.push_back(PathFigures{"plug-in -> hub record received by the hub process (onIncoming -> record)",
                                        "raw Unix datagram of 2196 bytes between two processes", toHub.summary(),
                                        raw.summary(), problem});
    results.paths.push_back(PathFigures{"hub record -> client operation (accept record -> answerCall)",
                                        "the same raw datagram plus one handoff", fromHub.summary(),
                                        rawHandoff.summary(), problem});
}

}  // namespace bench
