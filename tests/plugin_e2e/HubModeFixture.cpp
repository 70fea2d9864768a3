#include "HubModeFixture.h"

#include <sys/stat.h>

#include <cstdlib>
#include <thread>

#include "platform/HubPresence.h"

namespace e2e {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kHubCheckInterval = 2s;
constexpr auto kPollStep = 10ms;

// The client's log gets the plug-in's format texts as written, conversions included.
constexpr const char* kEventOfNoCall =
    "into pluginThread() case: VEXIL_CALL_EVENT, Start processing which is not related to a call";
constexpr const char* kFakeDevice = "processVexilEvent(EventPtr comeEvent): Fake device, ignore events!";
constexpr const char* kDtmfCase = "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_DTMF_KEY: %s";

}  // namespace

void HubModeEndToEnd::SetUp() {
    PluginEndToEnd::SetUp();
    if (HasFatalFailure()) {
        return;
    }
    ASSERT_TRUE(checks.install(folder)) << "cannot count the hub checks: no ps found";
    headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
}

void HubModeEndToEnd::TearDown() {
    // The plug-in goes first, so that it never sees the hub go away while it stops.
    if (plugin.isInitialized()) {
        uninitializePlugin();
    }
    EXPECT_TRUE(hub.stop()) << "the hub simulator did not end cleanly";
    PluginEndToEnd::TearDown();
    checks.uninstall();
}

void HubModeEndToEnd::startInHubMode() {
    ASSERT_TRUE(hub.start()) << "the hub simulator did not come up";
    checksBeforeStart = checks.count();
    ASSERT_NO_FATAL_FAILURE(initializePlugin());
    ASSERT_NO_FATAL_FAILURE(waitUntilProxyServes());
    ASSERT_NO_FATAL_FAILURE(chooseClientDevice(clientDeviceId(headset)));
    setRequest = expectReceivedMatching("set request", [](const HubRecord& record) {
        return record.messageType == hubcode::kDeviceMessage && record.deviceAction == hubcode::kSetActiveDevice;
    });
    getRequest = expectReceivedMatching("get request", [](const HubRecord& record) {
        return record.messageType == hubcode::kDeviceMessage && record.deviceAction == hubcode::kGetActiveDevice;
    });
    getAnswer = expectDeviceReport();
}

void HubModeEndToEnd::waitUntilProxyServes() {
    // The hub's reports are lost while the plug-in does not listen: a pipe closed by an earlier
    // uninitialize in this process listens again only once a hub check has found the hub.
    const std::string port = folder + "/ports/com.bqlhub.colloq";
    ASSERT_TRUE(waitUntil(
        [&port] {
            struct stat file {};
            return ::lstat(port.c_str(), &file) == 0;
        },
        kWait + kHubCheckInterval))
        << "the plug-in does not listen for the hub";
    for (;;) {
        const int checksBefore = hubChecks();
        const uint64_t mark = clientMark();
        // A DTMF report without keys: the proxy logs its case line and does nothing else, and the
        // direct handler has no code 13. A report without a device closes the round: either
        // handler logs it as a fake device once the first report has been handled.
        hubSays("dtmf call=-1 keys=255 device=" + quoted(headset.path));
        hubSays("dtmf call=-1 device=\"\"");
        expectPluginLine(ACCESSORY_LOG_MILESTONE, kFakeDevice, mark);
        ASSERT_TRUE(hasPluginLine(kEventOfNoCall, mark)) << "the worker did not take the hub's report";
        if (hasPluginLine(kDtmfCase, mark)) {
            return;
        }
        ASSERT_LT(checksBefore, 2) << "the direct handler still serves after the first hub check chose";
        // The first check has not chosen yet; it has once the next ps has ended.
        ASSERT_TRUE(waitForHubChecks(checksBefore + 1)) << "no hub check ran";
    }
}

void HubModeEndToEnd::hubSays(const std::string& command) {
    ASSERT_TRUE(hub.command(command)) << "the hub simulator did not take: " << command;
}

void HubModeEndToEnd::hubEvent(const std::string& action, int32_t callId, const std::string& options) {
    hubSays(action + " call=" + std::to_string(callId) + " device=" + quoted(headset.path) +
            (options.empty() ? "" : " " + options));
}

std::string HubModeEndToEnd::quoted(const std::string& text) {
    std::string word = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            word += '\\';
        }
        word += c;
    }
    return word + "\"";
}

HubRecord HubModeEndToEnd::expectReceived() {
    const std::optional<HubRecord> record = hub.nextReceived(kWait);
    EXPECT_TRUE(record.has_value()) << "the hub received nothing more";
    return record.value_or(HubRecord{});
}

HubRecord HubModeEndToEnd::expectReceivedMatching(const std::string& what, const HubSimulatorProcess::Match& match) {
    const std::optional<HubRecord> record = hub.receivedMatching(match, kWait);
    EXPECT_TRUE(record.has_value()) << "the hub received no " << what;
    return record.value_or(HubRecord{});
}

HubRecord HubModeEndToEnd::expectDeviceReport() {
    const std::optional<HubRecord> record =
        hub.sentMatching([](const HubRecord& sent) { return sent.messageType == hubcode::kDeviceMessage; }, kWait);
    EXPECT_TRUE(record.has_value()) << "the hub reported no active device";
    return record.value_or(HubRecord{});
}

HubSimulatorProcess::Match HubModeEndToEnd::callRecord(int64_t callState, int64_t callId) {
    return [callState, callId](const HubRecord& record) {
        return record.messageType == hubcode::kCallMessage && record.callState == callState && record.callId == callId;
    };
}

void HubModeEndToEnd::connectCall(int32_t id, const std::string& number, const std::string& name) {
    fireCall(CallbackSlot::OnIncoming, id, clientstate::kRinging, number, name);
    expectReceivedMatching("incoming call " + std::to_string(id), callRecord(hubcode::kIncoming, id));
    fireCall(CallbackSlot::OnConnected, id, clientstate::kConnected, number, name);
    expectReceivedMatching("answered call " + std::to_string(id), callRecord(hubcode::kAnswered, id));
}

bool HubModeEndToEnd::waitForHubChecks(int count) {
    const int missing = count - hubChecks();
    return waitUntil(
        [this, count] { return hubChecks() >= count; },
        kWait + std::max(missing, 0) * std::chrono::duration_cast<std::chrono::milliseconds>(kHubCheckInterval));
}

void HubModeEndToEnd::waitUntilNoHubRuns() {
    ASSERT_TRUE(waitUntil([] { return std::system(platform::kHubProcessCheckCommand) != 0; }, 6 * kWait))
        << "another hub keeps running on this machine";
}

int32_t HubModeEndToEnd::runtimePluginId() {
    const VexilCtlSession session = runtimeSession();
    return session.registered != 0 ? session.pluginId : 0;
}

bool HubModeEndToEnd::waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    while (!condition()) {
        if (Clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(kPollStep);
    }
    return true;
}

void StartedInHubMode::SetUp() {
    HubModeEndToEnd::SetUp();
    if (HasFatalFailure()) {
        return;
    }
    ASSERT_NO_FATAL_FAILURE(startInHubMode());
}

}  // namespace e2e
