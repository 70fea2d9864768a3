#include "PluginEndToEnd.h"

#include <dlfcn.h>

#include <regex>

#include "bqltest/ThreadNames.h"

namespace e2e {
namespace {

class Lifecycle : public PluginEndToEnd {};

TEST_F(Lifecycle, UninitializeEndsEveryTrackedCallOnTheHeadsetAndGivesTheRuntimeBack) {
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(headset);
    fireCall(CallbackSlot::OnIncoming, 81, clientstate::kRinging, "5550181", "Wes");
    fireCall(CallbackSlot::OnRemoteAlerting, 82, clientstate::kAlerting, "5550182", "Xia");
    drainWorker();
    ASSERT_EQ(runtimeSession().registered, 1);

    const uint64_t mark = clientMark();
    uninitializePlugin();
    const auto ended = runtimeCommandsOf(VEXILCTL_CMD_TERMINATE_CALL);
    ASSERT_EQ(ended.size(), 2u);
    EXPECT_EQ(ended[0].callId, 81);
    EXPECT_EQ(ended[1].callId, 82);
    EXPECT_EQ(headsetCallState(81), VEXILCTL_CALL_ENDED);
    EXPECT_EQ(headsetCallState(82), VEXILCTL_CALL_ENDED);
    const auto terminateLines = localLogMessages("INFO", "performTerminateCall");
    ASSERT_EQ(terminateLines.size(), 2u);
    for (const std::string& line : terminateLines) {
        EXPECT_TRUE(
            std::regex_match(line, std::regex("BQLColloqVexil: Terminate Call: callID = 0x[0-9a-f]+ Successful")))
            << line;
    }

    const RecordedCall stopping =
        expectPluginLine(ACCESSORY_LOG_TRACE, "Stopping BQLColloqPlugin::pluginThread()...", mark);
    const RecordedCall disconnected =
        expectPluginLine(ACCESSORY_LOG_MILESTONE, "Disconnected from VexilRT successfully", mark);
    EXPECT_LT(stopping.sequence, disconnected.sequence);
    const auto unregistered = clientCallsOf(HostCall::UnregisterAccessoryCallbacks, mark);
    ASSERT_EQ(unregistered.size(), 1u);
    EXPECT_GT(unregistered[0].sequence, disconnected.sequence);
    EXPECT_FALSE(client().callbacks().isRegistered());

    EXPECT_EQ(runtimeSession().registered, 0);
    int32_t subscribers = -1;
    EXPECT_EQ(vexilctl_manager_subscriber_count(&subscribers), VEXILCTL_OK);
    EXPECT_EQ(subscribers, 0);
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(Lifecycle, InitializeAgainWorksInTheSameProcessThreeTimes) {
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    for (int32_t cycle = 0; cycle < 3; ++cycle) {
        SCOPED_TRACE("cycle " + std::to_string(cycle + 1));
        const int32_t callId = 100 + cycle;
        const std::size_t mark = runtimeMark();
        startWithHeadset(headset);
        // Every start registers a new session.
        EXPECT_EQ(runtimeSession().pluginId, VEXILCTL_FIRST_PLUGIN_ID + cycle);

        fireCall(CallbackSlot::OnIncoming, callId, clientstate::kRinging, "5550100", "Yul");
        drainWorker();
        EXPECT_EQ(headsetCallState(callId), VEXILCTL_CALL_RINGING);

        uninitializePlugin();
        const auto commands = runtimeCommandsSince(mark);
        ASSERT_EQ(commands.size(), 2u);
        EXPECT_EQ(commands[0].command, VEXILCTL_CMD_INCOMING_CALL);
        EXPECT_EQ(commands[0].callId, callId);
        EXPECT_EQ(commands[1].command, VEXILCTL_CMD_TERMINATE_CALL);
        EXPECT_EQ(commands[1].callId, callId);
        EXPECT_FALSE(runtimeRunning());
        EXPECT_FALSE(client().callbacks().isRegistered());
    }
}

TEST_F(Lifecycle, SecondInitializeWithoutUninitializeKeepsOneWorkerAndOneUninitializeEndsEveryThread) {
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(headset);
    ASSERT_EQ(bqltest::threadsNamed("bql-worker"), 1);
    // The harness refuses a second initialize; a client that sends one goes through the export.
    void* library = dlopen(BQL_PLUGIN_PATH, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto initializeExport = reinterpret_cast<Accessory_PluginInitialize_t>(dlsym(library, "initialize"));
    ASSERT_NE(initializeExport, nullptr) << dlerror();
    EXPECT_EQ(initializeExport(client().entryPoint()), 0);
    dlclose(library);

    // The direct handler, still connected, cannot register a second session: it gives back
    // everything it held.
    allowErrors();
    expectLocalLog("ERROR", "connectToVexil",
                   "BQLColloqVexil: Failed to register Veltra Colloq session. Returned error code: 260");
    EXPECT_EQ(runtimeSession().registered, 0);
    EXPECT_FALSE(runtimeRunning());
    // One worker still takes every event.
    EXPECT_EQ(bqltest::threadsNamed("bql-worker"), 1);
    const uint64_t mark = clientMark();
    fireCall(CallbackSlot::OnIncoming, 91, clientstate::kRinging, "5550191", "Zed");
    expectPluginLine(ACCESSORY_LOG_TRACE, "into pluginThread() case: INCOMING_CALL_EVENT", mark);

    uninitializePlugin();
    EXPECT_EQ(bqltest::threadsNamed("bql-worker"), 0);
    EXPECT_EQ(bqltest::threadsNamed("bql-startup"), 0);
    EXPECT_FALSE(client().callbacks().isRegistered());
}

TEST_F(Lifecycle, UninitializeWithoutInitializeReturnsZeroAndTouchesNothing) {
    plugHeadset(0x0a1b, "SN1", "Model 5.1");
    // The harness only uninitializes what it initialized; a client calling uninitialize first
    // goes through the plug-in's own export.
    void* library = dlopen(BQL_PLUGIN_PATH, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto uninitializeExport = reinterpret_cast<Accessory_PluginUninitialize_t>(dlsym(library, "uninitialize"));
    ASSERT_NE(uninitializeExport, nullptr) << dlerror();
    EXPECT_EQ(uninitializeExport(), 0);
    dlclose(library);

    EXPECT_TRUE(client().journal().entries().empty());
    EXPECT_TRUE(runtimeCommands().empty());
    EXPECT_FALSE(runtimeRunning());

    // A start after it works as usual.
    initializePlugin();
    EXPECT_EQ(runtimeSession().registered, 1);
}

}  // namespace
}  // namespace e2e
