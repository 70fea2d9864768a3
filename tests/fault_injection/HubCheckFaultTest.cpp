// The hub check unable to run ps: while the hub runs, the plug-in cannot see it and stays on the
// direct handler, which serves the calls.
#include <ostream>
#include <string>

#include "HubModeFixture.h"
#include "StandInTools.h"

namespace e2e {
namespace {

struct BrokenPs {
    const char* name;
    StandInHubCheck::Ps ps;
};

std::ostream& operator<<(std::ostream& out, const BrokenPs& broken) { return out << broken.name; }

const BrokenPs kBroken[] = {
    {"PsMissingFromPath", StandInHubCheck::Ps::Missing},
    {"PsFailing", StandInHubCheck::Ps::Fails},
};

class HubCheckFault : public HubModeEndToEnd, public ::testing::WithParamInterface<BrokenPs> {
protected:
    void SetUp() override {
        HubModeEndToEnd::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        ASSERT_TRUE(standIn.install(folder, GetParam().ps)) << "cannot write the stand-in tools";
    }

    void TearDown() override {
        if (plugin.isInitialized()) {
            uninitializePlugin();
        }
        standIn.uninstall();
        HubModeEndToEnd::TearDown();
    }

    StandInHubCheck standIn;
};

TEST_P(HubCheckFault, PluginStaysOnTheDirectHandlerWhileTheHubRuns) {
    ASSERT_TRUE(hub.start()) << "the hub simulator did not come up";
    ASSERT_NO_FATAL_FAILURE(initializePlugin());
    ASSERT_TRUE(waitUntil([&] { return standIn.count() >= 2; }, kWait)) << "no hub checks ran";
    chooseClientDevice(clientDeviceId(headset));

    connectIncomingCall(91, "5550191", "Kai");
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_TERMINATE_CALL, 91);
    expectClientCall(HostCall::EndCall, headset.path, mark);

    const auto rung = runtimeCommandsOf(VEXILCTL_CMD_INCOMING_CALL);
    ASSERT_EQ(rung.size(), 1u);
    EXPECT_EQ(rung[0].callId, 91);
    EXPECT_FALSE(hub.nextReceived(std::chrono::milliseconds(200)).has_value()) << "the hub heard from the plug-in";
    EXPECT_EQ(runtimePluginId(), VEXILCTL_FIRST_PLUGIN_ID) << "the plug-in reconnected";
}

INSTANTIATE_TEST_SUITE_P(Ps, HubCheckFault, ::testing::ValuesIn(kBroken),
                         [](const ::testing::TestParamInfo<BrokenPs>& broken) { return broken.param.name; });

}  // namespace
}  // namespace e2e
