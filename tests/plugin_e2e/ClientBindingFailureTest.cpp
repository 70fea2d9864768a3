#include "PluginEndToEnd.h"

namespace e2e {
namespace {

using hostharness::HarnessStatus;
using hostharness::kCallControlVersion;
using hostharness::kClientFailure;
using hostharness::kLoggerVersion;

constexpr const char* kBindingFunction = "int BQLColloqPlugin::initializeColloqPoints(accessoryAPIEntryPoint_t)";

class ClientBindingFailure : public PluginEndToEnd {
protected:
    std::vector<uint32_t> entryPointVersions() {
        std::vector<uint32_t> versions;
        for (const RecordedCall& entry : client().journal().entriesOf(HostCall::EntryPoint)) {
            versions.push_back(entry.version);
        }
        return versions;
    }
};

TEST_F(ClientBindingFailure, RefusedRegistrationStartsNoWorkerAndNoRuntime) {
    allowErrors();
    ASSERT_EQ(client().responses().setResult(HostCall::RegisterAccessoryCallbacks, kClientFailure), HarnessStatus::Ok);
    plugHeadset(0x0a1b, "SN1", "Model 5.1");

    EXPECT_EQ(callInitialize(), 0);
    expectPluginLine(ACCESSORY_LOG_FAILURE, "Failed to register the AM callbacks");
    expectLocalLog("ERROR", "int BQLColloqPlugin::registerCallbacks()", "Failed to register the callbacks.");
    EXPECT_FALSE(hasPluginLine("Connected to Colloq successfully"));
    EXPECT_FALSE(hasPluginLine("Connected to VexilRT successfully"));
    EXPECT_FALSE(runtimeRunning());

    const uint64_t mark = clientMark();
    uninitializePlugin();
    // No worker took the stop event; the rest of the shutdown still ran.
    EXPECT_FALSE(hasPluginLine("Stopping BQLColloqPlugin::pluginThread()...", mark));
    expectPluginLine(ACCESSORY_LOG_MILESTONE, "Disconnected from VexilRT successfully", mark);
}

class ClientRegistrationResult : public ClientBindingFailure, public ::testing::WithParamInterface<int16_t> {};

TEST_P(ClientRegistrationResult, OtherThanMinusOneCountsAsSuccess) {
    ASSERT_EQ(client().responses().setResult(HostCall::RegisterAccessoryCallbacks, GetParam()), HarnessStatus::Ok);
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(headset);
    expectPluginLine(ACCESSORY_LOG_MILESTONE, "Connected to Colloq successfully");
    EXPECT_FALSE(hasPluginLine("Failed to register the AM callbacks"));

    fireCall(CallbackSlot::OnIncoming, 19, clientstate::kRinging, "5550019", "Abe");
    const auto rings = expectRuntimeCommands(VEXILCTL_CMD_INCOMING_CALL, 1);
    ASSERT_EQ(rings.size(), 1u);
    EXPECT_EQ(rings[0].callId, 19);
}

INSTANTIATE_TEST_SUITE_P(Results, ClientRegistrationResult, ::testing::Values(int16_t{1}, int16_t{-2}),
                         [](const ::testing::TestParamInfo<int16_t>& result) {
                             return result.param < 0 ? "Minus" + std::to_string(-result.param)
                                                     : "Plus" + std::to_string(result.param);
                         });

TEST_F(ClientBindingFailure, UnregistrationAnsweringOneIsLoggedAsFailure) {
    allowErrors();
    ASSERT_EQ(client().responses().setResult(HostCall::UnregisterAccessoryCallbacks, 1), HarnessStatus::Ok);
    plugHeadset(0x0a1b, "SN1", "Model 5.1");
    initializePlugin();

    const uint64_t mark = clientMark();
    uninitializePlugin();
    expectPluginLine(ACCESSORY_LOG_FAILURE, "Failed to unregister callbacks...", mark);
    expectLocalLog("ERROR", "void BQLColloqPlugin::unregisterCallbacks()", "Failed to unregister the callbacks.");
}

TEST_F(ClientBindingFailure, RefusedCallControlTableLeavesTheClientsLogUntouched) {
    allowErrors();
    ASSERT_EQ(client().responses().setEntryPointResult(kCallControlVersion, kClientFailure), HarnessStatus::Ok);

    EXPECT_EQ(callInitialize(), 0);
    EXPECT_EQ(entryPointVersions(), (std::vector<uint32_t>{kCallControlVersion}));
    expectLocalLog("ERROR", kBindingFunction, "Failed to get call control AM API.");

    uninitializePlugin();
    EXPECT_EQ(clientCallCount(HostCall::Log), 0u);
    EXPECT_EQ(clientCallCount(HostCall::RegisterAccessoryCallbacks), 0u);
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(ClientBindingFailure, RefusedLoggerTableLeavesTheClientsLogUntouched) {
    allowErrors();
    ASSERT_EQ(client().responses().setEntryPointResult(kLoggerVersion, kClientFailure), HarnessStatus::Ok);

    EXPECT_EQ(callInitialize(), 0);
    EXPECT_EQ(entryPointVersions(), (std::vector<uint32_t>{kCallControlVersion, kLoggerVersion}));
    expectLocalLog("ERROR", kBindingFunction, "Fail to get the logger API.");

    uninitializePlugin();
    EXPECT_EQ(clientCallCount(HostCall::GetLogger), 0u);
    EXPECT_EQ(clientCallCount(HostCall::Log), 0u);
    EXPECT_EQ(clientCallCount(HostCall::RegisterAccessoryCallbacks), 0u);
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(ClientBindingFailure, RefusedLoggerStillReceivesLaterLines) {
    allowErrors();
    ASSERT_EQ(client().responses().setResult(HostCall::GetLogger, kClientFailure), HarnessStatus::Ok);

    EXPECT_EQ(callInitialize(), 0);
    expectLocalLog("ERROR", kBindingFunction, "Fail to get the logger.");
    EXPECT_EQ(clientCallCount(HostCall::RegisterAccessoryCallbacks), 0u);

    // The version is only set after the logger was obtained, so the prefix carries none.
    uninitializePlugin();
    hostharness::LogExpectation expected;
    expected.text = "BQLColloqPlugin v.: Disconnected from VexilRT successfully";
    expected.severity = ACCESSORY_LOG_MILESTONE;
    EXPECT_EQ(client().journal().waitForLog(expected, kWait), HarnessStatus::Ok);
}

}  // namespace
}  // namespace e2e
