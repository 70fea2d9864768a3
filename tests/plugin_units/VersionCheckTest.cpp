// Whether the client may switch its audio device at the plug-in's request, decided from a
// version text on the plug-in instance.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "FakeClient.h"
#include "PluginInstance.h"

namespace {

using fakeclient::ClientLogLine;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(VersionCheck, FreshInstanceCannotChangeTheDevice) {
    PluginInstance instance;
    EXPECT_FALSE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, OwnVersionConstantSetsTheFlag) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkColloqVersion(), 0);
    EXPECT_TRUE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, Version9Point5LeavesTheFlagFalse) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("9.5.0.0"), 0);
    EXPECT_FALSE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, Version3Point5LeavesTheFlagFalse) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("3.5.1.1"), 0);
    EXPECT_FALSE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, Version9Point6SetsTheFlag) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("9.6.0.0"), 0);
    EXPECT_TRUE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, Version10Point0SetsTheFlag) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("10.0.0.0"), 0);
    EXPECT_TRUE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, LeadingNumbersAreComparedIndependentlySo8Point6Passes) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("8.6.0.0"), 0);
    EXPECT_TRUE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, UnsupportedVersionWritesTheTraceLineWithItsConversionAsWritten) {
    PluginInstance instance;
    ASSERT_EQ(instance.bindClientLogger(), -1);  // binding ran the check on the plug-in's own version
    fakeclient::clearLog();
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("9.5.0.0"), 0);
    EXPECT_THAT(fakeclient::logLines(),
                ElementsAre(ClientLogLine{ACCESSORY_LOG_TRACE,
                                          "BQLColloqPlugin v.3.8.51535.41614: Colloq does not support changing of "
                                          "activeDevice from plugin side. Colloq version '%s'"}));
}

TEST(VersionCheck, SupportedVersionWritesNothing) {
    PluginInstance instance;
    ASSERT_EQ(instance.bindClientLogger(), -1);
    fakeclient::clearLog();
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("9.6.0.0"), 0);
    EXPECT_THAT(fakeclient::logLines(), IsEmpty());
}

TEST(VersionCheck, FlagOnceSetIsNotClearedByALaterOldVersion) {
    PluginInstance instance;
    ASSERT_EQ(instance.plugin().checkColloqVersion(), 0);
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("9.5.0.0"), 0);
    EXPECT_TRUE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, ThreeOrFivePartsReturnMinusOneAndLeaveTheFlag) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("3.8.51535"), -1);
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("30.8.51535.41614.1"), -1);
    EXPECT_FALSE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, EmptyOrAllDotsReturnMinusOne) {
    PluginInstance instance;
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange(""), -1);
    EXPECT_EQ(instance.plugin().checkVersionSupportsDeviceChange("...."), -1);
    EXPECT_FALSE(instance.plugin().hostCanChangeDevice());
}

TEST(VersionCheck, NonNumericPartThrowsInvalidArgument) {
    PluginInstance instance;
    EXPECT_THROW(instance.plugin().checkVersionSupportsDeviceChange("ten.0.0.0"), std::invalid_argument);
    EXPECT_FALSE(instance.plugin().hostCanChangeDevice());
}

}  // namespace
