// Registering the softphone session and what its handle offers.
#include <gtest/gtest.h>

#include "RuntimeFixture.h"

namespace vexiltest {
namespace {

using SessionTest = RuntimeTest;

VexilCtlSession sessionState() {
    VexilCtlSession session{};
    EXPECT_EQ(VEXILCTL_OK, vexilctl_get_session(&session));
    return session;
}

TEST_F(SessionTest, RegisteringGivesPluginIdsFrom1001AndAnUnsetStatus) {
    startWithSession();
    EXPECT_EQ(VEXILCTL_FIRST_PLUGIN_ID, pluginId_);
    const VexilCtlSession session = sessionState();
    EXPECT_EQ(1, session.registered);
    EXPECT_EQ(pluginId_, session.pluginId);
    EXPECT_EQ(0, session.status);
    EXPECT_EQ(VEXIL_SESSION_KIND_SOFTPHONE, session.kind);
    EXPECT_STREQ("Veltra Colloq", session.name);
}

TEST_F(SessionTest, RegisteringRejectsNullArguments) {
    start();
    ISession* session = reinterpret_cast<ISession*>(0x1);
    EXPECT_EQ(VEXIL_E_INVALID_ARG, managerInt_->registerSession(nullptr, VEXIL_SESSION_KIND_SOFTPHONE, &session));
    EXPECT_EQ(nullptr, session);
    EXPECT_EQ(VEXIL_E_INVALID_ARG,
              managerInt_->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE, nullptr));
    EXPECT_EQ(0, sessionState().registered);
}

TEST_F(SessionTest, RegisteringRejectsAnUnknownNameOrKind) {
    start();
    ISession* session = nullptr;
    EXPECT_EQ(VEXIL_E_INVALID_ARG, managerInt_->registerSession(L"Colloq", VEXIL_SESSION_KIND_SOFTPHONE, &session));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, managerInt_->registerSession(VEXIL_SOFTPHONE_COLLOQ, 3101, &session));
    EXPECT_EQ(nullptr, session);
    EXPECT_EQ(0, sessionState().registered);
}

TEST_F(SessionTest, EverySoftphoneNameOfTheRuntimeIsAccepted) {
    start();
    for (const wchar_t* name : VEXIL_SOFTPHONE_NAMES) {
        ISession* session = nullptr;
        ASSERT_EQ(VEXIL_OK, managerInt_->registerSession(name, VEXIL_SESSION_KIND_SOFTPHONE, &session));
        bql::ReleasingPtr<ISession> held(session);
        EXPECT_EQ(narrow(name), sessionState().name);
        ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session));
    }
}

TEST_F(SessionTest, ASecondSessionIsRefusedWhileOneIsRegistered) {
    startWithSession();
    ISession* second = reinterpret_cast<ISession*>(0x1);
    EXPECT_EQ(VEXIL_E_ALREADY_EXISTS,
              managerInt_->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE, &second));
    EXPECT_EQ(nullptr, second);
    EXPECT_EQ(pluginId_, sessionState().pluginId);
}

TEST_F(SessionTest, ASessionAfterUnregisteringGetsTheNextPluginId) {
    startWithSession();
    ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session_.get()));
    EXPECT_EQ(0, sessionState().registered);
    session_.reset();
    ISession* session = nullptr;
    ASSERT_EQ(VEXIL_OK, managerInt_->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE, &session));
    session_.reset(session);
    int32_t pluginId = 0;
    ASSERT_EQ(VEXIL_OK, session_->getPluginId(&pluginId));
    EXPECT_EQ(VEXILCTL_FIRST_PLUGIN_ID + 1, pluginId);
}

TEST_F(SessionTest, UnregisteringRejectsNullAndForeignHandles) {
    startWithSession();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, manager_->unregisterSession(nullptr));
    ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session_.get()));
    EXPECT_EQ(VEXIL_E_NOT_FOUND, manager_->unregisterSession(session_.get()));
}

TEST_F(SessionTest, AHandleWhoseSessionIsGoneAnswersNotFound) {
    startWithSession();
    ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session_.get()));
    int32_t pluginId = 55;
    EXPECT_EQ(VEXIL_E_NOT_FOUND, session_->getPluginId(&pluginId));
    EXPECT_EQ(0, pluginId);
    EXPECT_EQ(VEXIL_E_NOT_FOUND, session_->registerCallback(&callEvents_));
    ICallCommand* command = reinterpret_cast<ICallCommand*>(0x1);
    EXPECT_EQ(VEXIL_E_NOT_FOUND, session_->getCallCommand(&command));
    EXPECT_EQ(nullptr, command);
    IDevice* device = reinterpret_cast<IDevice*>(0x1);
    EXPECT_EQ(VEXIL_E_NOT_FOUND, session_->getActiveDevice(&device));
    EXPECT_EQ(nullptr, device);
}

TEST_F(SessionTest, GetPluginIdRejectsANullOut) {
    startWithSession();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, session_->getPluginId(nullptr));
}

TEST_F(SessionTest, CallSubscribersRegisterOnceAndUnregister) {
    startWithSession();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, session_->registerCallback(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, session_->unregisterCallback(nullptr));
    EXPECT_EQ(VEXIL_E_NOT_FOUND, session_->unregisterCallback(&callEvents_));
    ASSERT_EQ(VEXIL_OK, session_->registerCallback(&callEvents_));
    EXPECT_EQ(VEXIL_E_ALREADY_EXISTS, session_->registerCallback(&callEvents_));
    EXPECT_EQ(1, sessionState().callSubscriberCount);
    EXPECT_EQ(VEXIL_OK, session_->unregisterCallback(&callEvents_));
    EXPECT_EQ(0, sessionState().callSubscriberCount);
}

TEST_F(SessionTest, UnregisteringTheSessionDropsItsCallSubscribers) {
    startWithSession();
    ASSERT_EQ(VEXIL_OK, session_->registerCallback(&callEvents_));
    ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session_.get()));
    session_.reset();
    startWithSession();
    EXPECT_EQ(0, sessionState().callSubscriberCount);
    EXPECT_EQ(VEXIL_OK, session_->registerCallback(&callEvents_));
}

TEST_F(SessionTest, GetCallCommandHandsOutANewReferenceEachTime) {
    startWithSession();
    ICallCommand* first = nullptr;
    ICallCommand* second = nullptr;
    ASSERT_EQ(VEXIL_OK, session_->getCallCommand(&first));
    ASSERT_EQ(VEXIL_OK, session_->getCallCommand(&second));
    EXPECT_NE(nullptr, first);
    EXPECT_NE(first, second);
    first->Release();
    FakeCall call(1);
    EXPECT_EQ(VEXIL_OK, second->answeredCall(&call));
    second->Release();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, session_->getCallCommand(nullptr));
}

TEST_F(SessionTest, ActiveDeviceIsMissingUntilAHeadsetIsPlugged) {
    startWithSession();
    IDevice* device = reinterpret_cast<IDevice*>(0x1);
    EXPECT_EQ(VEXIL_E_NO_DEVICE, session_->getActiveDevice(&device));
    EXPECT_EQ(nullptr, device);
    EXPECT_EQ(VEXIL_E_INVALID_ARG, session_->getActiveDevice(nullptr));

    const std::string first = plug(0xac27, "FIRST");
    plug(0xac28, "SECOND");
    ASSERT_EQ(VEXIL_OK, session_->getActiveDevice(&device));
    bql::ReleasingPtr<IDevice> held(device);
    wchar_t path[VEXIL_DEVICE_PATH_CHARS] = {};
    ASSERT_EQ(VEXIL_OK, held->getDevicePath(path, VEXIL_DEVICE_PATH_CHARS));
    EXPECT_EQ(first, narrow(path));
}

TEST_F(SessionTest, ReservedPositionsAreNotSupported) {
    startWithSession();
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, session_->reserved2());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, session_->reserved4());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, session_->reserved8());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, manager_->reserved1());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, manager_->reserved4());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, manager_->reserved5());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, manager_->reserved6());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, managerInt_->reserved2());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, managerInt_->reserved12());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, managerInt_->reserved18());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, deviceManager_->reserved1());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, deviceManager_->reserved4());
}

}  // namespace
}  // namespace vexiltest
