// The phases against small fixture plug-ins: one that is clean, one that leaves a thread
// running, one whose uninitialize never returns, and ones that choose the headset the client
// names, one of them giving up after a name no headset has.
#include <gtest/gtest.h>

#include "CyclePhase.h"
#include "DlopenPhase.h"
#include "NamePhase.h"
#include "ResidentMemory.h"
#include "vexilctl/VexilControl.h"

namespace colloqvalidate {
namespace {

using namespace std::chrono_literals;

TEST(PhaseChecks, QuietPluginPassesTheCyclesWithTheMemoryCheck) {
    const PhaseReport report = runCyclePhase({QUIET_PLUGIN_PATH, 60, CycleLimits{3000ms, {}}, 1024});
    EXPECT_TRUE(report.passed()) << failureLine(report);
    EXPECT_NE(report.figures.find("60 initialize/uninitialize cycles"), std::string::npos) << report.figures;
    EXPECT_NE(report.figures.find("KiB at cycle 50"), std::string::npos) << report.figures;
}

TEST(PhaseChecks, QuietPluginPassesTheDlopenCycles) {
    const PhaseReport report = runDlopenPhase({QUIET_PLUGIN_PATH, 5, CycleLimits{3000ms, {}}});
    EXPECT_TRUE(report.passed()) << failureLine(report);
    EXPECT_NE(report.figures.find("5 dlopen/initialize/uninitialize/dlclose cycles"), std::string::npos);
}

TEST(PhaseChecks, ThreadLeftRunningFailsTheThreadCheckByName) {
    const PhaseReport report = runDlopenPhase({LEAKING_PLUGIN_PATH, 3, CycleLimits{3000ms, {}}});
    ASSERT_FALSE(report.passed());
    EXPECT_EQ(report.failure->check, "threads back to the baseline");
    EXPECT_NE(report.failure->detail.find("fixture-leak"), std::string::npos) << report.failure->detail;
    EXPECT_NE(report.failure->detail.find("(cycle 1)"), std::string::npos) << report.failure->detail;
    EXPECT_FALSE(report.pluginHung);
}

TEST(PhaseChecks, UninitializeThatNeverReturnsFailsWithinTheLimit) {
    const PhaseReport report = runCyclePhase({HANGING_PLUGIN_PATH, 5, CycleLimits{200ms, {}}, 1024});
    ASSERT_FALSE(report.passed());
    EXPECT_EQ(report.failure->check, "uninitialize returns within 200 ms");
    EXPECT_TRUE(report.pluginHung);
    EXPECT_NE(failureLine(report).find("in phase cycles"), std::string::npos);
}

TEST(PhaseChecks, MissingLibraryFailsToLoad) {
    const PhaseReport report = runCyclePhase({"/nonexistent/libNoPlugin.so", 3, CycleLimits{3000ms, {}}, 1024});
    ASSERT_FALSE(report.passed());
    EXPECT_EQ(report.failure->check, "the plug-in loads");
}

// A few names of different kinds; the validator itself hands the whole list.
NamePhaseSettings namesFor(const std::string& pluginPath) {
    NamePhaseSettings settings;
    settings.pluginPath = pluginPath;
    const std::vector<std::pair<std::string, std::string>> names = {
        {"one letter, 8 KiB", std::string(8192, 'A')}, {"unclosed parentheses", "(((("}, {"byte 0x3a", ":"}};
    for (const auto& [label, name] : names) {
        settings.names.push_back({label, hostharness::clientDeviceIdentifier(name)});
    }
    settings.callbackLimit = 3000ms;
    settings.selectionTimeout = 300ms;
    settings.limits = CycleLimits{3000ms, {}};
    return settings;
}

int32_t headsetsPluggedIn() {
    int32_t count = -1;
    EXPECT_EQ(vexilctl_headset_count(&count), VEXILCTL_OK);
    return count;
}

TEST(PhaseChecks, PluginThatChoosesEveryNamedHeadsetPassesTheNames) {
    const PhaseReport report = runNamePhase(namesFor(NAME_PICKING_PLUGIN_PATH));
    EXPECT_TRUE(report.passed()) << failureLine(report);
    EXPECT_NE(report.figures.find("3 of 3 hostile names handed on a 512 KiB stack, worst onActiveDeviceChanged "),
              std::string::npos)
        << report.figures;
    EXPECT_NE(report.figures.find(", 3 selections after them confirmed, uninitialize "), std::string::npos)
        << report.figures;
    EXPECT_EQ(headsetsPluggedIn(), 0);
}

TEST(PhaseChecks, PluginThatStopsChoosingAfterAnUnknownNameFailsTheNextSelection) {
    const PhaseReport report = runNamePhase(namesFor(NAME_GIVING_UP_PLUGIN_PATH));
    ASSERT_FALSE(report.passed());
    EXPECT_EQ(report.failure->check, "next valid name selects the headset");
    EXPECT_NE(
        report.failure->detail.find("headset 2 (Model 70, hid/vid_2f0c&pid_0b70/NAMES2) after 'one letter, 8 KiB'"),
        std::string::npos)
        << report.failure->detail;
    EXPECT_NE(report.figures.find("1 of 3 hostile names handed"), std::string::npos) << report.figures;
    EXPECT_FALSE(report.pluginHung);
    EXPECT_EQ(headsetsPluggedIn(), 0);
}

TEST(PhaseChecks, PluginWithoutCallbacksFailsTheNamesBeforeTheFirstHostileName) {
    const PhaseReport report = runNamePhase(namesFor(QUIET_PLUGIN_PATH));
    ASSERT_FALSE(report.passed());
    EXPECT_EQ(report.failure->check, "the callbacks are registered");
    EXPECT_NE(report.failure->detail.find("the valid name of headset 1 (Model 40) before any hostile name"),
              std::string::npos)
        << report.failure->detail;
    EXPECT_NE(report.figures.find("0 of 3 hostile names handed"), std::string::npos) << report.figures;
    EXPECT_EQ(headsetsPluggedIn(), 0);
}

TEST(PhaseChecks, ResidentMemoryIsReadInKib) { EXPECT_GT(residentKib(), 0); }

}  // namespace
}  // namespace colloqvalidate
