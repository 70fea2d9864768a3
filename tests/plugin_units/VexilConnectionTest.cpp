// The direct handler's connection to the runtime: the session, its activation, the event
// subscriptions, the active headset, and giving everything back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "DirectHandlerFixture.h"
#include "RuntimeJournal.h"
#include "vexilctl/VexilControl.h"

namespace {

using bqltest::LocalLogEntry;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using VexilConnection = DirectHandlerTest;

LocalLogEntry connectError(const std::string& message) { return {"ERROR", "connectToVexil", message}; }

VexilCtlSession runtimeSession() {
    VexilCtlSession session{};
    EXPECT_EQ(vexilctl_get_session(&session), VEXILCTL_OK);
    return session;
}

int32_t managerSubscribers() {
    int32_t count = -1;
    EXPECT_EQ(vexilctl_manager_subscriber_count(&count), VEXILCTL_OK);
    return count;
}

int32_t defaultSoftphone() {
    int32_t pluginId = -1;
    EXPECT_EQ(vexilctl_get_default_softphone(&pluginId), VEXILCTL_OK);
    return pluginId;
}

void failNext(const char* operation, int32_t status) {
    ASSERT_EQ(vexilctl_inject_fault(operation, status, 1), VEXILCTL_OK) << operation;
}

TEST_F(VexilConnection, ConnectRegistersActivatesSubscribesAndAttaches) {
    plug(0x1a2b, "A1", "Model 5", false);
    EXPECT_EQ(handler().connectToVexil(&queue), 0);

    const VexilCtlSession session = runtimeSession();
    EXPECT_EQ(session.registered, 1);
    EXPECT_STREQ(session.name, "Veltra Colloq");
    EXPECT_EQ(session.kind, 3100);
    EXPECT_EQ(session.pluginId, kFirstPluginId);
    EXPECT_EQ(session.status, 2);
    EXPECT_EQ(session.callSubscriberCount, 1);
    EXPECT_EQ(managerSubscribers(), 1);
    EXPECT_THAT(runtimejournal::entries(),
                ElementsAre("registerSession", "ISession::registerCallback", "setPluginStatus 1001 2",
                            "registerCallback", "ISession::getActiveDevice"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(VexilConnection, SessionManagerFailureLogsOneLineReturnsMinusOneAndLeavesTheRuntimeRunning) {
    failNext("getSessionManager", 77);
    EXPECT_EQ(handler().connectToVexil(&queue), -1);

    EXPECT_THAT(log.entries(),
                ElementsAre(connectError("BQLColloqVexil: Failed to retrieve SessionManager instance from VexilRT. "
                                         "Returned error code: 77")));
    EXPECT_TRUE(runtimeRunning());
    EXPECT_EQ(runtimeSession().registered, 0);
    EXPECT_THAT(runtimejournal::entries(), IsEmpty());
}

TEST_F(VexilConnection, SessionRegistrationFailureLogsOneLineReturnsMinusOneAndShutsTheRuntimeDown) {
    failNext("ISessionManagerInt::registerSession", 78);
    EXPECT_EQ(handler().connectToVexil(&queue), -1);

    EXPECT_THAT(
        log.entries(),
        ElementsAre(connectError("BQLColloqVexil: Failed to register Veltra Colloq session. Returned error code: 78")));
    EXPECT_THAT(runtimejournal::entries(), ElementsAre("registerSession"));
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(VexilConnection, CallbackRegistrationFailureDeactivatesUnregistersAndReleasesTheSession) {
    failNext("ISession::registerCallback", 79);
    EXPECT_EQ(handler().connectToVexil(&queue), -1);

    EXPECT_THAT(
        log.entries(),
        ElementsAre(connectError("BQLColloqVexil: Failed to register session callbacks. Returned error code: 79")));
    EXPECT_THAT(runtimejournal::entries(),
                ElementsAre("registerSession", "ISession::registerCallback", "setPluginStatus 1001 5",
                            "ISession::unregisterCallback", "unregisterSession", "ISession::Release"));
    EXPECT_EQ(runtimeSession().registered, 0);
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(VexilConnection, ActivationFailureLogsItThenDisconnectsFully) {
    failNext("ISessionManager::setPluginStatus", 80);
    EXPECT_EQ(handler().connectToVexil(&queue), -1);

    EXPECT_THAT(log.entries(),
                ElementsAre(connectError("BQLColloqVexil: Failed to activate Colloq Plugin. Returned error code: 80")));
    EXPECT_THAT(
        runtimejournal::entries(),
        ElementsAre("registerSession", "ISession::registerCallback", "setPluginStatus 1001 2", "setPluginStatus 1001 5",
                    "ISession::unregisterCallback", "unregisterSession", "ISession::Release"));
    EXPECT_EQ(runtimeSession().registered, 0);
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(VexilConnection, CallCommandFailureLogsItThenDisconnectsFully) {
    failNext("ISession::getCallCommand", 81);
    EXPECT_EQ(handler().connectToVexil(&queue), -1);

    EXPECT_THAT(
        log.entries(),
        ElementsAre(connectError("BQLColloqVexil: Failed to get call command from session. Returned error code: 81")));
    EXPECT_THAT(
        runtimejournal::entries(),
        ElementsAre("registerSession", "ISession::registerCallback", "setPluginStatus 1001 2", "setPluginStatus 1001 5",
                    "ISession::unregisterCallback", "unregisterSession", "ISession::Release"));
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(VexilConnection, ManagerEventsFailureLogsItThenDisconnectsFullyIncludingTheSubscriber) {
    failNext("ISessionManager::registerCallback", 82);
    EXPECT_EQ(handler().connectToVexil(&queue), -1);

    EXPECT_THAT(log.entries(),
                ElementsAre(connectError(
                    "BQLColloqVexil: Failed to register for session manager events. Returned error code: 82")));
    EXPECT_THAT(runtimejournal::entries(),
                ElementsAre("registerSession", "ISession::registerCallback", "setPluginStatus 1001 2",
                            "registerCallback", "setPluginStatus 1001 5", "ISession::unregisterCallback",
                            "unregisterSession", "ISession::Release", "unregisterCallback"));
    EXPECT_EQ(managerSubscribers(), 0);
    EXPECT_FALSE(runtimeRunning());
}

TEST_F(VexilConnection, ConnectAfterAFailedConnectSucceeds) {
    failNext("ISessionManager::setPluginStatus", 80);
    ASSERT_EQ(handler().connectToVexil(&queue), -1);
    EXPECT_EQ(handler().connectToVexil(&queue), 0);
    EXPECT_EQ(runtimeSession().status, 2);
}

TEST_F(VexilConnection, DisplayHeadsetMakesThePluginTheDefaultAfterClearingAnyOther) {
    plug(0x1a2b, "A1", "Model 5", true);
    EXPECT_EQ(handler().connectToVexil(&queue), 0);

    EXPECT_EQ(defaultSoftphone(), kFirstPluginId);
    EXPECT_THAT(journalEntriesStartingWith("setDefaultSoftphone"),
                ElementsAre("setDefaultSoftphone 0", "setDefaultSoftphone 1001"));
    EXPECT_THAT(log.entriesOf("attachToDevice"),
                ElementsAre(LocalLogEntry{"DEBUG", "attachToDevice", "BQLColloqVexil: set the plugin as default"}));
}

TEST_F(VexilConnection, HeadsetWithoutDisplayIsAttachedButThePluginIsNotMadeDefault) {
    const std::string path = plug(0x1a2b, "A1", "Model 5", false);
    EXPECT_EQ(handler().connectToVexil(&queue), 0);

    EXPECT_EQ(defaultSoftphone(), 0);
    EXPECT_THAT(journalEntriesStartingWith("setDefaultSoftphone"), IsEmpty());
    std::string activePath;
    EXPECT_EQ(handler().getVexilActiveDevicePath(&activePath), 0);
    EXPECT_EQ(activePath, path);
}

TEST_F(VexilConnection, HostCommandFailureLogsItAndCountsTheHeadsetAsWithoutDisplay) {
    plug(0x1a2b, "A1", "Model 5", true);
    failNext("IDevice::getHostCommand", 83);
    EXPECT_EQ(handler().connectToVexil(&queue), 0);

    EXPECT_THAT(errors(),
                ElementsAre(LocalLogEntry{"ERROR", "IsDisplayDevice", "IsDisplayDevice: getHostCommand failed."}));
    EXPECT_EQ(defaultSoftphone(), 0);
}

TEST_F(VexilConnection, ConnectWithoutHeadsetLogsTheActiveDeviceFailureAndStillSucceeds) {
    EXPECT_EQ(handler().connectToVexil(&queue), 0);
    EXPECT_THAT(errors(), ElementsAre(LocalLogEntry{"ERROR", "attachToDevice",
                                                    "Failed to get Active Device from SessionManager. Returned "
                                                    "error code: 261"}));
    EXPECT_EQ(runtimeSession().status, 2);
}

TEST_F(VexilConnection, AttachWithADeviceHeldDoesNotAskTheRuntimeAgain) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    handler().attachToDevice();
    EXPECT_THAT(journalEntriesStartingWith("ISession::getActiveDevice"), ElementsAre("ISession::getActiveDevice"));
}

TEST_F(VexilConnection, AttachWithoutSessionLogsInvalidSession) {
    handler().attachToDevice();
    EXPECT_THAT(log.entries(), ElementsAre(LocalLogEntry{"ERROR", "attachToDevice", "Invalid session: NULL"}));
}

TEST_F(VexilConnection, IsDisplayDeviceWithoutDeviceIsFalseWithoutALogLine) {
    EXPECT_FALSE(handler().IsDisplayDevice());
    EXPECT_THAT(log.entries(), IsEmpty());
}

TEST_F(VexilConnection, IsDisplayDeviceAnswersForTheAttachedHeadset) {
    plug(0x1a2b, "A1", "Model 5", true);
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    EXPECT_TRUE(handler().IsDisplayDevice());
}

TEST_F(VexilConnection, ActiveDevicePathIsReadAfterAskingTheRuntimeToRefresh) {
    const std::string path = plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    int32_t refreshesBefore = 0;
    ASSERT_EQ(vexilctl_refresh_count(&refreshesBefore), VEXILCTL_OK);

    std::string activePath = "unchanged";
    EXPECT_EQ(handler().getVexilActiveDevicePath(&activePath), 0);
    EXPECT_EQ(activePath, path);
    int32_t refreshesAfter = 0;
    ASSERT_EQ(vexilctl_refresh_count(&refreshesAfter), VEXILCTL_OK);
    EXPECT_EQ(refreshesAfter, refreshesBefore + 1);
}

TEST_F(VexilConnection, ActiveDevicePathWithoutDeviceReturnsMinusOneAndLeavesTheStringUnchanged) {
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    std::string activePath = "unchanged";
    EXPECT_EQ(handler().getVexilActiveDevicePath(&activePath), -1);
    EXPECT_EQ(activePath, "unchanged");
}

TEST_F(VexilConnection, DetachReleasesTheActiveDevice) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    handler().detachFromDevice();
    std::string activePath = "unchanged";
    EXPECT_EQ(handler().getVexilActiveDevicePath(&activePath), -1);
    EXPECT_EQ(activePath, "unchanged");
}

TEST_F(VexilConnection, HeadsetPluggedInLaterIsAttachedAndDetachedWhenRemoved) {
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    const std::string path = plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(settle());
    std::string activePath;
    EXPECT_EQ(handler().getVexilActiveDevicePath(&activePath), 0);
    EXPECT_EQ(activePath, path);

    ASSERT_EQ(vexilctl_remove_headset(path.c_str()), VEXILCTL_OK);
    ASSERT_NO_FATAL_FAILURE(settle());
    std::string afterRemoval = "unchanged";
    EXPECT_EQ(handler().getVexilActiveDevicePath(&afterRemoval), -1);
}

TEST_F(VexilConnection, HeadsetButtonReachesTheConnectedQueue) {
    const std::string path = plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    ASSERT_EQ(vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 7, nullptr), VEXILCTL_OK);
    ASSERT_NO_FATAL_FAILURE(settle());

    ASSERT_EQ(queue.Size(), 1u);
    std::shared_ptr<BQLColloqEvent> event;
    queue.WaitAndGet(event);
    EXPECT_EQ(event->type, VEXIL_CALL_EVENT);
    EXPECT_EQ(event->callId, 7);
    EXPECT_EQ(event->vexilState, CALL_STATE_ACCEPT_CALL);
    EXPECT_EQ(event->info, path);
}

TEST_F(VexilConnection, DisconnectDeactivatesUnsubscribesReleasesAndShutsTheRuntimeDown) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    runtimejournal::clear();

    EXPECT_EQ(handler().disconnectFromVexil(), 0);
    EXPECT_THAT(runtimejournal::entries(), ElementsAre("setPluginStatus 1001 5", "ISession::unregisterCallback",
                                                       "unregisterSession", "ISession::Release", "unregisterCallback"));
    EXPECT_EQ(runtimeSession().registered, 0);
    EXPECT_EQ(managerSubscribers(), 0);
    EXPECT_FALSE(runtimeRunning());
    std::string activePath = "unchanged";
    EXPECT_EQ(handler().getVexilActiveDevicePath(&activePath), -1);
}

TEST_F(VexilConnection, DisconnectTwiceIsHarmless) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_EQ(handler().connectToVexil(&queue), 0);
    ASSERT_EQ(handler().disconnectFromVexil(), 0);
    runtimejournal::clear();

    EXPECT_EQ(handler().disconnectFromVexil(), 0);
    EXPECT_THAT(runtimejournal::entries(), IsEmpty());
    EXPECT_FALSE(runtimeRunning());
    EXPECT_THAT(errors(), IsEmpty());
}

}  // namespace
