// The phases against small fixture plug-ins: one that is clean, one that leaves a thread
// running, one whose uninitialize never returns.
#include <gtest/gtest.h>

#include "CyclePhase.h"
#include "DlopenPhase.h"
#include "ResidentMemory.h"

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

TEST(PhaseChecks, ResidentMemoryIsReadInKib) { EXPECT_GT(residentKib(), 0); }

}  // namespace
}  // namespace colloqvalidate
