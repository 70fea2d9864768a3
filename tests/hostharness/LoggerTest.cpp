// The client's logger as a plug-in uses it: loggers handed out by name, lines captured with
// logger name, severity and text, and refusal of bad arguments.
#include <gtest/gtest.h>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::kClientFailure;
using hostharness::kLoggerVersion;
using hostharness::RecordedCall;

class LoggerTest : public HarnessTest {
protected:
    void SetUp() override {
        HarnessTest::SetUp();
        ASSERT_EQ(host.entryPoint()(kLoggerVersion, &loggerApi), 0);
    }

    std::vector<RecordedCall> lines() { return host.journal().entriesOf(HostCall::Log); }

    Accessory_LoggerAPI_v1_0_t loggerApi{};
};

TEST_F(LoggerTest, LinesCarryTheLoggerNameSeverityAndTextInOrder) {
    ACCLogger_t first{};
    ACCLogger_t second{};
    ASSERT_EQ(loggerApi.getLogger("BQLColloqPlugin", &first), 0);
    ASSERT_EQ(loggerApi.getLogger("Other", &second), 0);
    loggerApi.log(&first, 4, "milestone");
    loggerApi.log(&second, 5, "trace");
    loggerApi.log(&first, 1, "failure");
    const auto captured = lines();
    ASSERT_EQ(captured.size(), 3u);
    EXPECT_EQ(captured[0].loggerName, "BQLColloqPlugin");
    EXPECT_EQ(captured[0].severity, 4);
    EXPECT_EQ(captured[0].text, "milestone");
    EXPECT_EQ(captured[1].loggerName, "Other");
    EXPECT_EQ(captured[1].severity, 5);
    EXPECT_EQ(captured[2].severity, 1);
    EXPECT_EQ(captured[2].text, "failure");
    EXPECT_LT(captured[0].sequence, captured[2].sequence);
}

TEST_F(LoggerTest, GetLoggerIsJournalledWithItsName) {
    ACCLogger_t logger{};
    ASSERT_EQ(loggerApi.getLogger("Fixture", &logger), 0);
    const auto entries = host.journal().entriesOf(HostCall::GetLogger);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].loggerName, "Fixture");
}

TEST_F(LoggerTest, ConfiguredGetLoggerFailureLeavesTheRecordUnfilled) {
    host.responses().setResult(HostCall::GetLogger, kClientFailure);
    ACCLogger_t logger{};
    EXPECT_EQ(loggerApi.getLogger("Fixture", &logger), kClientFailure);
    loggerApi.log(&logger, 5, "after a failed getLogger");
    const auto captured = lines();
    ASSERT_EQ(captured.size(), 1u);
    EXPECT_EQ(captured[0].loggerName, "");
}

TEST_F(LoggerTest, GetLoggerWithNullArgumentsFails) {
    ACCLogger_t logger{};
    EXPECT_EQ(loggerApi.getLogger(nullptr, &logger), kClientFailure);
    EXPECT_EQ(loggerApi.getLogger("name", nullptr), kClientFailure);
    const auto entries = host.journal().entriesOf(HostCall::GetLogger);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_TRUE(entries[0].nullArgument);
    EXPECT_TRUE(entries[1].nullArgument);
}

TEST_F(LoggerTest, LineToARecordNeverHandedOutHasNoLoggerName) {
    ACCLogger_t stranger{};
    stranger.opaque[0] = 0x5a;
    loggerApi.log(&stranger, 5, "who am I");
    const auto captured = lines();
    ASSERT_EQ(captured.size(), 1u);
    EXPECT_EQ(captured[0].loggerName, "");
    EXPECT_EQ(captured[0].text, "who am I");
    EXPECT_FALSE(captured[0].nullArgument);
}

TEST_F(LoggerTest, NullTextOrNullLoggerIsCapturedAsRefused) {
    ACCLogger_t logger{};
    ASSERT_EQ(loggerApi.getLogger("L", &logger), 0);
    loggerApi.log(&logger, 5, nullptr);
    loggerApi.log(nullptr, 5, "text");
    const auto captured = lines();
    ASSERT_EQ(captured.size(), 2u);
    EXPECT_TRUE(captured[0].nullArgument);
    EXPECT_EQ(captured[0].text, "");
    EXPECT_TRUE(captured[1].nullArgument);
    EXPECT_EQ(captured[1].loggerName, "");
}

TEST_F(LoggerTest, RecordHandedOutBeforeAResetNoLongerNamesALogger) {
    ACCLogger_t logger{};
    ASSERT_EQ(loggerApi.getLogger("Old", &logger), 0);
    host.reset();
    loggerApi.log(&logger, 5, "stale");
    const auto captured = lines();
    ASSERT_EQ(captured.size(), 1u);
    EXPECT_EQ(captured[0].loggerName, "");
}

TEST_F(LoggerTest, PluginLinesArriveWithTheirSeverities) {
    startFixture();
    RecordedCall milestone;
    ASSERT_EQ(waitForLog("Fixture initialized", kArrives, &milestone), HarnessStatus::Ok);
    EXPECT_EQ(milestone.severity, 4);
    RecordedCall trace;
    ASSERT_EQ(waitForLog("Fixture callbacks registered", kArrives, &trace), HarnessStatus::Ok);
    EXPECT_EQ(trace.severity, 5);
    EXPECT_EQ(trace.loggerName, "Fixture");
}

}  // namespace
}  // namespace harnesstest
