// The plug-in end to end in hub mode: the hub simulator runs as a second process, so the
// plug-in's hub check finds it and the proxy handler carries the calls. The substitute runtime
// still supplies the headsets that make the plug-in active and name the client's devices.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "HubModeCheckCounter.h"
#include "HubModeSimulator.h"
#include "PluginEndToEnd.h"

namespace e2e {

// The hub's codes (its own numbering) and the kinds of its messages.
namespace hubcode {
constexpr int64_t kCallMessage = 0;
constexpr int64_t kDialMessage = 1;
constexpr int64_t kDeviceMessage = 2;

constexpr int64_t kTerminate = 7;
constexpr int64_t kHold = 9;
constexpr int64_t kResume = 10;
constexpr int64_t kMuteOn = 11;
constexpr int64_t kMuteOff = 12;
constexpr int64_t kIncoming = 15;
constexpr int64_t kOutgoing = 16;
constexpr int64_t kAnswered = 17;
constexpr int64_t kInsert = 18;
constexpr int64_t kDeviceRequest = 20;

constexpr int64_t kDeviceIsActive = 0;
constexpr int64_t kNoActiveDevice = 1;
constexpr int64_t kGetActiveDevice = 2;
constexpr int64_t kSetActiveDevice = 3;
}  // namespace hubcode

class HubModeEndToEnd : public PluginEndToEnd {
protected:
    void SetUp() override;
    void TearDown() override;

    // Starts the hub, initializes the plug-in, waits until the proxy serves and makes the
    // headset the client's device. That choice asks the hub to set and then report its active
    // device; the two requests and the hub's answer are taken off into setRequest, getRequest
    // and getAnswer.
    void startInHubMode();
    // Waits until the worker hands headset events to the proxy, and fails when the direct
    // handler still serves once the first hub check has chosen.
    void waitUntilProxyServes();

    // A command to the hub simulator.
    void hubSays(const std::string& command);
    // A headset event from the hub about a call, on the headset's device.
    void hubEvent(const std::string& action, int32_t callId, const std::string& options = "");
    // A text as one word of the simulator's command language.
    static std::string quoted(const std::string& text);

    // The next record the hub received from the plug-in.
    HubRecord expectReceived();
    // The oldest record the hub received that matches; earlier ones stay for expectReceived.
    HubRecord expectReceivedMatching(const std::string& what, const HubSimulatorProcess::Match& match);
    // The next report of its active device that the hub sent to the plug-in.
    HubRecord expectDeviceReport();
    static HubSimulatorProcess::Match callRecord(int64_t callState, int64_t callId);

    // The client reports a ringing call and its answer; both records reach the hub.
    void connectCall(int32_t id, const std::string& number, const std::string& name);

    // Checks counted since the hub simulator came up.
    int hubChecks() const { return checks.count() - checksBeforeStart; }
    // Waits until `count` checks have been counted since the hub simulator came up.
    bool waitForHubChecks(int count);
    // Waits until the process table shows no hub (one of another test run may still end).
    void waitUntilNoHubRuns();
    int32_t runtimePluginId();

    // Looks at the condition every few milliseconds until it holds or the time is up: neither
    // the check count nor the runtime's session offers a notification.
    static bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

    Headset headset;
    HubSimulatorProcess hub;
    HubRecord setRequest;
    HubRecord getRequest;
    HubRecord getAnswer;

private:
    HubCheckCounter checks;
    int checksBeforeStart = 0;
};

// Tests that start with the plug-in serving through the hub.
class StartedInHubMode : public HubModeEndToEnd {
protected:
    void SetUp() override;
};

}  // namespace e2e
