// Loading, initializing, uninitializing and unloading a plug-in the way the client does.
#include <gtest/gtest.h>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::HarnessStatus;
using hostharness::HostCall;

using PluginLibraryTest = HarnessTest;

TEST_F(PluginLibraryTest, MissingFileFailsToLoadWithAMessage) {
    EXPECT_EQ(plugin.load("/nonexistent/libNoSuchPlugin.so"), HarnessStatus::LoadFailed);
    EXPECT_FALSE(plugin.isLoaded());
    EXPECT_NE(plugin.lastError().find("libNoSuchPlugin.so"), std::string::npos) << plugin.lastError();
}

TEST_F(PluginLibraryTest, PluginWithoutInitializeIsRefusedAndNamesTheMissingFunction) {
    EXPECT_EQ(plugin.load(kPluginWithoutInitialize), HarnessStatus::EntryPointMissing);
    EXPECT_FALSE(plugin.isLoaded());
    EXPECT_NE(plugin.lastError().find("initialize"), std::string::npos) << plugin.lastError();
}

TEST_F(PluginLibraryTest, LoadInitializeUninitializeUnloadRunsThePluginsEntryPoints) {
    ASSERT_EQ(plugin.load(kFixturePlugin), HarnessStatus::Ok) << plugin.lastError();
    EXPECT_TRUE(plugin.isLoaded());
    EXPECT_TRUE(plugin.lastError().empty());
    int result = -1;
    ASSERT_EQ(plugin.initialize(host.entryPoint(), &result), HarnessStatus::Ok);
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(plugin.isInitialized());
    EXPECT_EQ(host.journal().countOf(HostCall::RegisterAccessoryCallbacks), 1u);

    result = -1;
    ASSERT_EQ(plugin.uninitialize(&result), HarnessStatus::Ok);
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(plugin.isInitialized());
    EXPECT_EQ(host.journal().countOf(HostCall::UnregisterAccessoryCallbacks), 1u);
    EXPECT_EQ(waitForLog("Fixture uninitialized"), HarnessStatus::Ok);

    EXPECT_EQ(plugin.unload(), HarnessStatus::Ok);
    EXPECT_FALSE(plugin.isLoaded());
}

TEST_F(PluginLibraryTest, OperationsOnAnUnloadedPluginReportNotLoaded) {
    EXPECT_EQ(plugin.initialize(host.entryPoint()), HarnessStatus::NotLoaded);
    EXPECT_EQ(plugin.uninitialize(), HarnessStatus::NotLoaded);
    EXPECT_EQ(plugin.unload(), HarnessStatus::NotLoaded);
    EXPECT_TRUE(host.journal().entries().empty());
}

TEST_F(PluginLibraryTest, SecondLoadAndSecondInitializeAreRefused) {
    startFixture();
    EXPECT_EQ(plugin.load(kFixturePlugin), HarnessStatus::AlreadyLoaded);
    EXPECT_EQ(plugin.initialize(host.entryPoint()), HarnessStatus::AlreadyInitialized);
    EXPECT_EQ(host.journal().countOf(HostCall::RegisterAccessoryCallbacks), 1u);
}

TEST_F(PluginLibraryTest, NullEntryPointIsRefusedWithoutCallingThePlugin) {
    ASSERT_EQ(plugin.load(kFixturePlugin), HarnessStatus::Ok);
    EXPECT_EQ(plugin.initialize(nullptr), HarnessStatus::NullArgument);
    EXPECT_FALSE(plugin.isInitialized());
    EXPECT_TRUE(host.journal().entries().empty());
}

TEST_F(PluginLibraryTest, UninitializeBeforeInitializeReportsNotInitialized) {
    ASSERT_EQ(plugin.load(kFixturePlugin), HarnessStatus::Ok);
    EXPECT_EQ(plugin.uninitialize(), HarnessStatus::NotInitialized);
    EXPECT_TRUE(host.journal().entries().empty());
}

TEST_F(PluginLibraryTest, UnloadUninitializesAPluginStillInitialized) {
    startFixture();
    EXPECT_EQ(plugin.unload(), HarnessStatus::Ok);
    EXPECT_EQ(host.journal().countOf(HostCall::UnregisterAccessoryCallbacks), 1u);
    EXPECT_FALSE(host.callbacks().isRegistered());
}

TEST_F(PluginLibraryTest, DestroyingTheLibraryUninitializesAndUnloads) {
    {
        hostharness::PluginLibrary scoped;
        ASSERT_EQ(scoped.load(kFixturePlugin), HarnessStatus::Ok);
        ASSERT_EQ(scoped.initialize(host.entryPoint()), HarnessStatus::Ok);
    }
    EXPECT_EQ(host.journal().countOf(HostCall::UnregisterAccessoryCallbacks), 1u);
    EXPECT_FALSE(host.callbacks().isRegistered());
}

TEST_F(PluginLibraryTest, PluginCanBeLoadedAgainAfterUnload) {
    startFixture();
    ASSERT_EQ(plugin.unload(), HarnessStatus::Ok);
    startFixture();
    EXPECT_TRUE(host.callbacks().isRegistered());
    EXPECT_EQ(host.journal().countOf(HostCall::RegisterAccessoryCallbacks), 2u);
}

}  // namespace
}  // namespace harnesstest
