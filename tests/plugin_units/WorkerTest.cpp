#include <chrono>
#include <future>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeClient.h"
#include "PluginInstance.h"

namespace {

using fakeclient::ClientLogLine;
using ::testing::ElementsAre;
using namespace std::chrono_literals;

TEST(Worker, EventsOfKindsZeroTenAndThirteenAreConsumedWithoutEffect) {
    PluginInstance instance;
    BQLColloqPlugin& plugin = instance.plugin();
    ASSERT_EQ(instance.bindClientLogger(), -1);  // the client refuses the callbacks: no worker runs yet
    fakeclient::clearLog();

    for (const int kind : {0, 10, 13}) {
        plugin.getEventQueue().Push(std::make_shared<BQLColloqEvent>(static_cast<BQLColloqEventType>(kind), 7));
    }
    plugin.getEventQueue().Push(std::make_shared<BQLColloqEvent>(STOP_PLUGIN_EVENT, 0));
    std::future<void> worker = std::async(std::launch::async, [&plugin] { plugin.pluginThread(); });
    const bool ended = worker.wait_for(10s) == std::future_status::ready;
    if (!ended) {
        plugin.getEventQueue().Push(std::make_shared<BQLColloqEvent>(STOP_PLUGIN_EVENT, 0));
    }

    ASSERT_TRUE(ended) << "the worker did not reach the stop event";
    EXPECT_EQ(plugin.getEventQueue().Size(), 0u);
    // Only the stop event left a trace: the three others neither logged nor touched a call.
    EXPECT_THAT(fakeclient::logLines(),
                ElementsAre(ClientLogLine{ACCESSORY_LOG_TRACE,
                                          "BQLColloqPlugin v.3.8.51535.41614: Stopping BQLColloqPlugin::pluginThread()..."}));
    EXPECT_EQ(plugin.callCount(), 0u);
    EXPECT_FALSE(plugin.getIsMuted());
}

}  // namespace
