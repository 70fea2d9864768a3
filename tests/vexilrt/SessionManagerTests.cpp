// Plug-in status, session-manager subscribers and the default softphone.
#include <gtest/gtest.h>

#include "RuntimeFixture.h"

namespace vexiltest {
namespace {

using SessionManagerTest = RuntimeTest;

int32_t pluginStatus() {
    VexilCtlSession session{};
    EXPECT_EQ(VEXILCTL_OK, vexilctl_get_session(&session));
    return session.status;
}

int32_t defaultSoftphone() {
    int32_t pluginId = -1;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_get_default_softphone(&pluginId));
    return pluginId;
}

ISoftphoneDefaults* softphoneDefaults(ISessionManager* manager) {
    ISoftphoneDefaults* defaults = nullptr;
    EXPECT_EQ(VEXIL_OK, manager->getSoftphoneDefaults(&defaults));
    return defaults;
}

TEST_F(SessionManagerTest, PluginStatusActivatesAndDeactivates) {
    startWithSession();
    ASSERT_EQ(VEXIL_OK, manager_->setPluginStatus(pluginId_, VEXIL_PLUGIN_ACTIVE));
    EXPECT_EQ(VEXIL_PLUGIN_ACTIVE, pluginStatus());
    ASSERT_EQ(VEXIL_OK, manager_->setPluginStatus(pluginId_, VEXIL_PLUGIN_INACTIVE));
    EXPECT_EQ(VEXIL_PLUGIN_INACTIVE, pluginStatus());
}

TEST_F(SessionManagerTest, PluginStatusRejectsOtherValues) {
    startWithSession();
    ASSERT_EQ(VEXIL_OK, manager_->setPluginStatus(pluginId_, VEXIL_PLUGIN_ACTIVE));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, manager_->setPluginStatus(pluginId_, 0));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, manager_->setPluginStatus(pluginId_, 3));
    EXPECT_EQ(VEXIL_PLUGIN_ACTIVE, pluginStatus());
}

TEST_F(SessionManagerTest, PluginStatusOfAnUnknownIdIsNotFound) {
    startWithSession();
    EXPECT_EQ(VEXIL_E_NOT_FOUND, manager_->setPluginStatus(pluginId_ + 1, VEXIL_PLUGIN_ACTIVE));
    EXPECT_EQ(0, pluginStatus());
}

TEST_F(SessionManagerTest, SubscribersRegisterOnceAndUnregister) {
    start();
    int32_t count = -1;
    EXPECT_EQ(VEXIL_E_INVALID_ARG, manager_->registerCallback(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, manager_->unregisterCallback(nullptr));
    EXPECT_EQ(VEXIL_E_NOT_FOUND, manager_->unregisterCallback(&managerEvents_));
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
    EXPECT_EQ(VEXIL_E_ALREADY_EXISTS, manager_->registerCallback(&managerEvents_));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_manager_subscriber_count(&count));
    EXPECT_EQ(1, count);
    EXPECT_EQ(VEXIL_OK, manager_->unregisterCallback(&managerEvents_));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_manager_subscriber_count(&count));
    EXPECT_EQ(0, count);
}

TEST_F(SessionManagerTest, SoftphoneDefaultsRecordTheDefaultAndZeroClearsIt) {
    startWithSession();
    ISoftphoneDefaults* defaults = softphoneDefaults(manager_);
    ASSERT_NE(nullptr, defaults);
    EXPECT_EQ(softphoneDefaults(manager_), defaults);
    ASSERT_EQ(VEXIL_OK, defaults->setDefaultSoftphone(pluginId_));
    EXPECT_EQ(pluginId_, defaultSoftphone());
    ASSERT_EQ(VEXIL_OK, defaults->setDefaultSoftphone(0));
    EXPECT_EQ(0, defaultSoftphone());
}

TEST_F(SessionManagerTest, SoftphoneDefaultsRejectNegativeAndUnknownIds) {
    startWithSession();
    ISoftphoneDefaults* defaults = softphoneDefaults(manager_);
    ASSERT_EQ(VEXIL_OK, defaults->setDefaultSoftphone(pluginId_));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, defaults->setDefaultSoftphone(-1));
    EXPECT_EQ(VEXIL_E_NOT_FOUND, defaults->setDefaultSoftphone(pluginId_ + 7));
    EXPECT_EQ(pluginId_, defaultSoftphone());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, defaults->reserved1());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, defaults->reserved13());
}

TEST_F(SessionManagerTest, GetSoftphoneDefaultsRejectsANullOut) {
    start();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, manager_->getSoftphoneDefaults(nullptr));
}

TEST_F(SessionManagerTest, TheDefaultSoftphoneSurvivesAShutdown) {
    startWithSession();
    ASSERT_EQ(VEXIL_OK, softphoneDefaults(manager_)->setDefaultSoftphone(pluginId_));
    ShutDownVexilRuntime();
    EXPECT_EQ(pluginId_, defaultSoftphone());
}

}  // namespace
}  // namespace vexiltest
