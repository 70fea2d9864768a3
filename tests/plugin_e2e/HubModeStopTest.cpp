// The hub going away: the plug-in reconnects once and the runtime carries the calls again.
#include <cstdlib>
#include <sstream>

#include "HubModeFixture.h"
#include "platform/HubPresence.h"

namespace e2e {
namespace {

class HubModeStop : public HubModeEndToEnd {
protected:
    std::size_t localLinesContaining(const std::string& text) const {
        std::istringstream lines(localLog());
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line);) {
            if (line.find(text) != std::string::npos) {
                ++count;
            }
        }
        return count;
    }
};

TEST_F(HubModeStop, HubStoppingReconnectsOnceAndTheDirectHandlerServesAgain) {
    // Another run's hub would keep the plug-in in hub mode.
    ASSERT_NO_FATAL_FAILURE(waitUntilNoHubRuns());
    ASSERT_NO_FATAL_FAILURE(startInHubMode());
    const int32_t firstSession = runtimePluginId();
    ASSERT_EQ(firstSession, VEXILCTL_FIRST_PLUGIN_ID);

    ASSERT_TRUE(hub.stop());

    // A reconnect drops the runtime session and registers a new one, under the next plug-in id.
    ASSERT_TRUE(waitUntil([&] { return runtimePluginId() == firstSession + 1; }, kWait))
        << "no reconnect after the hub stopped; plug-in id " << runtimePluginId()
        << (std::system(platform::kHubProcessCheckCommand) == 0 ? "; another run's hub is running on this machine" : "");
    const int checksAtReconnect = hubChecks();
    ASSERT_TRUE(waitForHubChecks(checksAtReconnect + 2)) << "the hub checks stopped";
    EXPECT_EQ(runtimePluginId(), firstSession + 1) << "a later check reconnected again";
    EXPECT_EQ(localLinesContaining("pipe stoped (Colloq side)."), 1u) << localLog();

    fireCall(CallbackSlot::OnIncoming, 61, clientstate::kRinging, "5550161", "Dora Lund");

    const auto rings = expectRuntimeCommands(VEXILCTL_CMD_INCOMING_CALL, 1);
    ASSERT_EQ(rings.size(), 1u);
    EXPECT_EQ(rings[0].callId, 61);
    EXPECT_STREQ(rings[0].contactName, "Dora Lund");
    EXPECT_STREQ(rings[0].contactPhone, "5550161");
    EXPECT_EQ(headsetCallState(61), VEXILCTL_CALL_RINGING);
    // The pipe reopens only when a check finds a hub; after the stop none should.
    EXPECT_EQ(localLinesContaining("pipe started (Colloq side)."), 1u)
        << "a hub check found a hub after the simulator stopped: another run's hub on this machine?";
}

}  // namespace
}  // namespace e2e
