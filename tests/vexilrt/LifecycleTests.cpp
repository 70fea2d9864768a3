// Starting and stopping the runtime, and what survives a restart.
#include <gtest/gtest.h>

#include <thread>

#include "RuntimeFixture.h"
#include "bqltest/ThreadNames.h"

namespace vexiltest {
namespace {

using LifecycleTest = RuntimeTest;

int32_t isRunning() {
    int32_t running = -1;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_is_running(&running));
    return running;
}

TEST_F(LifecycleTest, InitStartsTheRuntimeAndIsIdempotent) {
    EXPECT_EQ(0, isRunning());
    EXPECT_EQ(VEXIL_OK, InitVexilRuntime());
    EXPECT_EQ(1, isRunning());
    EXPECT_EQ(VEXIL_OK, InitVexilRuntime());
    EXPECT_EQ(1, isRunning());
    EXPECT_EQ(1, bqltest::threadsNamed("vexil-events"));
}

TEST_F(LifecycleTest, GettersBeforeInitReportNotInitializedAndClearTheirOut) {
    auto* manager = reinterpret_cast<ISessionManager*>(0x1);
    auto* managerInt = reinterpret_cast<ISessionManagerInt*>(0x1);
    auto* deviceManager = reinterpret_cast<IDeviceManager*>(0x1);
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, getSessionManager(&manager));
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, getSessionManagerInt(&managerInt));
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, getDeviceManager(&deviceManager));
    EXPECT_EQ(nullptr, manager);
    EXPECT_EQ(nullptr, managerInt);
    EXPECT_EQ(nullptr, deviceManager);
}

TEST_F(LifecycleTest, GettersRejectANullOut) {
    start();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, getSessionManager(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, getSessionManagerInt(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, getDeviceManager(nullptr));
}

TEST_F(LifecycleTest, GettersHandOutTheSameSingletonsAcrossRestarts) {
    start();
    ISessionManager* manager = nullptr;
    ISessionManagerInt* managerInt = nullptr;
    IDeviceManager* deviceManager = nullptr;
    ShutDownVexilRuntime();
    ASSERT_EQ(VEXIL_OK, InitVexilRuntime());
    ASSERT_EQ(VEXIL_OK, getSessionManager(&manager));
    ASSERT_EQ(VEXIL_OK, getSessionManagerInt(&managerInt));
    ASSERT_EQ(VEXIL_OK, getDeviceManager(&deviceManager));
    EXPECT_EQ(manager_, manager);
    EXPECT_EQ(managerInt_, managerInt);
    EXPECT_EQ(deviceManager_, deviceManager);
}

TEST_F(LifecycleTest, ShutdownJoinsTheEventThread) {
    start();
    ASSERT_EQ(1, bqltest::threadsNamed("vexil-events"));
    ShutDownVexilRuntime();
    EXPECT_EQ(0, bqltest::threadsNamed("vexil-events"));
    EXPECT_EQ(0, isRunning());
}

TEST_F(LifecycleTest, ShutdownIsIdempotentAndHarmlessBeforeInit) {
    ShutDownVexilRuntime();
    start();
    ShutDownVexilRuntime();
    ShutDownVexilRuntime();
    EXPECT_EQ(0, isRunning());
    EXPECT_EQ(0, bqltest::threadsNamed("vexil-events"));
}

TEST_F(LifecycleTest, ShutdownDropsSessionAndSubscribersButKeepsHeadsets) {
    startWithSession();
    ASSERT_EQ(VEXIL_OK, session_->registerCallback(&callEvents_));
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
    const std::string path = plug(0xac27, "LIFE1");
    ShutDownVexilRuntime();

    VexilCtlSession session{};
    ASSERT_EQ(VEXILCTL_OK, vexilctl_get_session(&session));
    EXPECT_EQ(0, session.registered);
    int32_t subscribers = -1;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_manager_subscriber_count(&subscribers));
    EXPECT_EQ(0, subscribers);
    int32_t headsets = 0;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_count(&headsets));
    EXPECT_EQ(1, headsets);
}

TEST_F(LifecycleTest, RestartedRuntimeAcceptsASessionAndDeliversEvents) {
    startWithSession();
    ShutDownVexilRuntime();
    session_.reset();
    startWithSession();
    EXPECT_EQ(VEXILCTL_FIRST_PLUGIN_ID + 1, pluginId_);
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
    plug(0xac27, "LIFE2");
    settle();
    EXPECT_EQ(1u, log_.count());
}

TEST_F(LifecycleTest, OperationsAfterShutdownReportNotInitialized) {
    startWithSession();
    ICallCommand* command = callCommand();
    ShutDownVexilRuntime();
    FakeCall call(1);
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, manager_->setPluginStatus(pluginId_, VEXIL_PLUGIN_ACTIVE));
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, manager_->registerCallback(&managerEvents_));
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, managerInt_->refreshDevices(1));
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, session_->registerCallback(&callEvents_));
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, command->holdCall(&call));
    IDeviceEnumeration* devices = reinterpret_cast<IDeviceEnumeration*>(0x1);
    EXPECT_EQ(VEXIL_E_NOT_INITIALIZED, deviceManager_->getDevices(&devices));
    EXPECT_EQ(nullptr, devices);
}

TEST_F(LifecycleTest, ShutdownFromInsideADeliveryReturnsAndARestartJoinsTheOldThread) {
    start();
    Signal shutDownInside;
    RecordingManagerEvents stopper(log_, [&](const ReceivedEvent&) {
        ShutDownVexilRuntime();
        shutDownInside.raise();
    });
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&stopper));
    plug(0xac27, "LIFE3");
    ASSERT_TRUE(shutDownInside.waitFor());
    EXPECT_EQ(0, isRunning());

    ASSERT_EQ(VEXIL_OK, InitVexilRuntime());
    EXPECT_EQ(1, bqltest::threadsNamed("vexil-events"));
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
    plug(0xac27, "LIFE4");
    settle();
    EXPECT_EQ(2u, log_.count());
}

TEST_F(LifecycleTest, InitFromTheEventThreadItJustStoppedIsRefused) {
    start();
    Signal done;
    int32_t initStatus = VEXIL_OK;
    RecordingManagerEvents restarter(log_, [&](const ReceivedEvent&) {
        ShutDownVexilRuntime();
        initStatus = InitVexilRuntime();
        done.raise();
    });
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&restarter));
    plug(0xac27, "LIFE5");
    ASSERT_TRUE(done.waitFor());
    EXPECT_EQ(VEXIL_E_REFUSED, initStatus);
    EXPECT_EQ(0, isRunning());
}

TEST_F(LifecycleTest, ConcurrentInitAndShutdownLeaveAConsistentRuntime) {
    std::thread starter([] {
        for (int i = 0; i < 50; ++i) {
            InitVexilRuntime();
        }
    });
    std::thread stopper([] {
        for (int i = 0; i < 50; ++i) {
            ShutDownVexilRuntime();
        }
    });
    starter.join();
    stopper.join();
    ShutDownVexilRuntime();
    EXPECT_EQ(0, isRunning());
    EXPECT_EQ(0, bqltest::threadsNamed("vexil-events"));
    EXPECT_EQ(VEXIL_OK, InitVexilRuntime());
    EXPECT_EQ(1, bqltest::threadsNamed("vexil-events"));
}

TEST_F(LifecycleTest, ResetIsRefusedWhileRunning) {
    start();
    plug(0xac27, "LIFE6");
    EXPECT_EQ(VEXILCTL_E_RUNNING, vexilctl_reset());
    int32_t headsets = 0;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_count(&headsets));
    EXPECT_EQ(1, headsets);
}

TEST_F(LifecycleTest, ResetForgetsEverythingAndRestartsPluginIds) {
    startWithSession();
    plug(0xac27, "LIFE7");
    FakeCall call(3);
    ASSERT_EQ(VEXIL_OK, callCommand()->setMute(true));
    ASSERT_EQ(VEXIL_OK, callCommand()->holdCall(&call));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_inject_fault("ISessionManager::setPluginStatus", 9, VEXILCTL_FAULT_ALWAYS));
    ShutDownVexilRuntime();
    session_.reset();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_reset());

    int32_t value = -1;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_count(&value));
    EXPECT_EQ(0, value);
    ASSERT_EQ(VEXILCTL_OK, vexilctl_command_count(&value));
    EXPECT_EQ(0, value);
    ASSERT_EQ(VEXILCTL_OK, vexilctl_get_mute(&value));
    EXPECT_EQ(0, value);
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_get_call_state(3, &value));

    startWithSession();
    EXPECT_EQ(VEXILCTL_FIRST_PLUGIN_ID, pluginId_);
    EXPECT_EQ(VEXIL_OK, manager_->setPluginStatus(pluginId_, VEXIL_PLUGIN_ACTIVE));
}

}  // namespace
}  // namespace vexiltest
