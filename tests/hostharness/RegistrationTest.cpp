// Registering and unregistering the plug-in's callback table, with the client's answers a test
// chooses, and what firing a callback does when no table is registered.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::CallbackSlot;
using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::kCallControlVersion;
using hostharness::kClientFailure;
using hostharness::RecordedCall;

using RegistrationTest = HarnessTest;

TEST_F(RegistrationTest, AcceptedRegistrationKeepsThePluginsTable) {
    startFixture();
    const auto registrations = host.journal().entriesOf(HostCall::RegisterAccessoryCallbacks);
    ASSERT_EQ(registrations.size(), 1u);
    EXPECT_NE(registrations[0].table, nullptr);
    EXPECT_EQ(host.callbacks().registeredTable(), registrations[0].table);
    EXPECT_EQ(waitForLog("Fixture callbacks registered"), HarnessStatus::Ok);
}

TEST_F(RegistrationTest, RefusedRegistrationKeepsNoTableAndThePluginSeesTheFailure) {
    host.responses().setResult(HostCall::RegisterAccessoryCallbacks, kClientFailure);
    startFixture();
    EXPECT_FALSE(host.callbacks().isRegistered());
    RecordedCall line;
    ASSERT_EQ(waitForLog("Fixture callbacks refused", kArrives, &line), HarnessStatus::Ok);
    EXPECT_EQ(line.severity, 1);
    EXPECT_EQ(host.callbacks().fireCallEvent(CallbackSlot::OnIncoming, {1, 7, 0, "1", "a"}),
              HarnessStatus::NotRegistered);
}

TEST_F(RegistrationTest, RegistrationAnsweringOneCountsAsDoneForTheHarness) {
    host.responses().setResult(HostCall::RegisterAccessoryCallbacks, 1);
    startFixture();
    EXPECT_TRUE(host.callbacks().isRegistered());
    EXPECT_EQ(waitForLog("Fixture callbacks registered"), HarnessStatus::Ok);
}

TEST_F(RegistrationTest, UnregistrationAnswersTheConfiguredResultAndForgetsTheTable) {
    host.responses().setResult(HostCall::UnregisterAccessoryCallbacks, 1);
    startFixture();
    ASSERT_EQ(plugin.uninitialize(), HarnessStatus::Ok);
    EXPECT_FALSE(host.callbacks().isRegistered());
    RecordedCall line;
    ASSERT_EQ(waitForLog("Fixture unregistered callbacks: 1", kArrives, &line), HarnessStatus::Ok);
    EXPECT_EQ(line.severity, 1);
}

TEST_F(RegistrationTest, FiringAfterUnregistrationReportsNotRegistered) {
    startFixture();
    ASSERT_EQ(plugin.uninitialize(), HarnessStatus::Ok);
    EXPECT_EQ(host.callbacks().fire(CallbackSlot::OnAudioMute, {}), HarnessStatus::NotRegistered);
    EXPECT_EQ(host.journal().countOf(HostCall::MuteCall), 0u);
}

TEST_F(RegistrationTest, FiringWithNothingEverRegisteredReportsNotRegistered) {
    int result = 99;
    EXPECT_EQ(host.callbacks().fire(CallbackSlot::OnAudioUnmute, {}, &result), HarnessStatus::NotRegistered);
    EXPECT_EQ(result, 99);
}

class DirectRegistrationTest : public HarnessTest {
protected:
    void SetUp() override {
        HarnessTest::SetUp();
        ASSERT_EQ(host.entryPoint()(kCallControlVersion, &table), 0);
    }
    Accessory_CallControlAPI_v1_0_t table{};
    Accessory_CallControlCallback_v1_0_t callbacks{};
};

TEST_F(DirectRegistrationTest, NullTableIsRefusedOnBothSides) {
    EXPECT_EQ(table.registerAccessoryCallbacks(nullptr), kClientFailure);
    EXPECT_EQ(table.unregisterAccessoryCallbacks(nullptr), kClientFailure);
    EXPECT_FALSE(host.callbacks().isRegistered());
    for (const RecordedCall& entry : host.journal().entries()) {
        if (entry.call != HostCall::EntryPoint) {
            EXPECT_TRUE(entry.nullArgument) << hostharness::hostCallName(entry.call);
        }
    }
}

TEST_F(DirectRegistrationTest, UnregisteringATableThatIsNotRegisteredFailsAndKeepsTheRegisteredOne) {
    ASSERT_EQ(table.registerAccessoryCallbacks(&callbacks), 0);
    Accessory_CallControlCallback_v1_0_t other{};
    EXPECT_EQ(table.unregisterAccessoryCallbacks(&other), kClientFailure);
    EXPECT_EQ(host.callbacks().registeredTable(), &callbacks);
    const auto entries = host.journal().entriesOf(HostCall::UnregisterAccessoryCallbacks);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].table, &other);
}

TEST_F(DirectRegistrationTest, RegisteredTableWithANullSlotReportsCallbackMissing) {
    ASSERT_EQ(table.registerAccessoryCallbacks(&callbacks), 0);
    EXPECT_EQ(host.callbacks().fire(CallbackSlot::OnAudioMute, {}), HarnessStatus::CallbackMissing);
}

// Lies in this executable's image, as a plug-in's static table lies in the plug-in's.
Accessory_CallControlCallback_v1_0_t imageTable{};

TEST_F(DirectRegistrationTest, TableLyingInALibraryAboutToBeUnloadedIsDropped) {
    ASSERT_EQ(table.registerAccessoryCallbacks(&imageTable), 0);
    // A function of another library: the table is not in that one.
    void* other = dlopen(kPluginWithoutInitialize.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(other, nullptr) << dlerror();
    const void* otherFunction = dlsym(other, "uninitialize");
    EXPECT_NE(otherFunction, nullptr);
    EXPECT_FALSE(host.callbacks().forgetIfInside(otherFunction));
    dlclose(other);
    EXPECT_TRUE(host.callbacks().isRegistered());
    // Anything of this executable: the table is in it.
    EXPECT_TRUE(host.callbacks().forgetIfInside(&kCallControlVersion));
    EXPECT_FALSE(host.callbacks().isRegistered());
}

}  // namespace
}  // namespace harnesstest
