// Waiting for a call or a log line: it may already be there or come later from another thread;
// filters on device, number, key, severity and sequence; the time-out path; bad expectations.
#include <gtest/gtest.h>

#include <thread>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::CallExpectation;
using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::kCallControlVersion;
using hostharness::kLoggerVersion;
using hostharness::LogExpectation;
using hostharness::RecordedCall;
using hostharness::TextMatch;

class JournalTest : public HarnessTest {
protected:
    void SetUp() override {
        HarnessTest::SetUp();
        ASSERT_EQ(host.entryPoint()(kCallControlVersion, &table), 0);
        ASSERT_EQ(host.entryPoint()(kLoggerVersion, &loggerApi), 0);
        ASSERT_EQ(loggerApi.getLogger("Test", &logger), 0);
    }

    Accessory_CallControlAPI_v1_0_t table{};
    Accessory_LoggerAPI_v1_0_t loggerApi{};
    ACCLogger_t logger{};
};

TEST_F(JournalTest, WaitReturnsACallMadeEarlier) {
    table.holdCall("dev-1");
    RecordedCall matched;
    EXPECT_EQ(waitFor(HostCall::HoldCall, "dev-1", kStaysAway, &matched), HarnessStatus::Ok);
    EXPECT_EQ(matched.call, HostCall::HoldCall);
    EXPECT_EQ(matched.device, "dev-1");
}

TEST_F(JournalTest, WaitReturnsOnceAnotherThreadMakesTheCall) {
    std::thread pluginThread([this] { table.resumeCall("dev-2"); });
    RecordedCall matched;
    const HarnessStatus status = waitFor(HostCall::ResumeCall, "dev-2", kArrives, &matched);
    pluginThread.join();
    EXPECT_EQ(status, HarnessStatus::Ok);
    EXPECT_NE(matched.thread, std::this_thread::get_id());
}

TEST_F(JournalTest, WaitTimesOutWhenTheCallNeverComesAndLeavesTheOutputAlone) {
    table.holdCall("dev-1");
    RecordedCall matched;
    matched.device = "untouched";
    EXPECT_EQ(waitFor(HostCall::HoldCall, "dev-other", kStaysAway, &matched), HarnessStatus::TimedOut);
    EXPECT_EQ(matched.device, "untouched");
}

TEST_F(JournalTest, ZeroOrNegativeTimeoutOnlyLooksAtWhatIsThere) {
    EXPECT_EQ(waitFor(HostCall::EndCall, "dev", std::chrono::milliseconds(0)), HarnessStatus::TimedOut);
    EXPECT_EQ(waitFor(HostCall::EndCall, "dev", std::chrono::milliseconds(-5)), HarnessStatus::TimedOut);
    table.endCall("dev");
    EXPECT_EQ(waitFor(HostCall::EndCall, "dev", std::chrono::milliseconds(0)), HarnessStatus::Ok);
}

TEST_F(JournalTest, NumberAndKeyFiltersMustMatchWhenGiven) {
    table.makeCall("dev", "111");
    table.sendDtmf("dev", '5');
    CallExpectation make;
    make.call = HostCall::MakeCall;
    make.number = "222";
    EXPECT_EQ(host.journal().waitFor(make, kStaysAway), HarnessStatus::TimedOut);
    make.number = "111";
    EXPECT_EQ(host.journal().waitFor(make, kStaysAway), HarnessStatus::Ok);
    CallExpectation dtmf;
    dtmf.call = HostCall::SendDtmf;
    dtmf.key = '6';
    EXPECT_EQ(host.journal().waitFor(dtmf, kStaysAway), HarnessStatus::TimedOut);
    dtmf.key = '5';
    dtmf.device = "dev";
    EXPECT_EQ(host.journal().waitFor(dtmf, kStaysAway), HarnessStatus::Ok);
}

TEST_F(JournalTest, OnlyCallsAfterTheGivenSequenceCount) {
    table.muteCall("dev");
    CallExpectation expected;
    expected.call = HostCall::MuteCall;
    expected.afterSequence = host.journal().lastSequence();
    EXPECT_EQ(host.journal().waitFor(expected, kStaysAway), HarnessStatus::TimedOut);
    table.muteCall("dev");
    RecordedCall matched;
    EXPECT_EQ(host.journal().waitFor(expected, kStaysAway, &matched), HarnessStatus::Ok);
    EXPECT_EQ(matched.sequence, expected.afterSequence + 1);
}

TEST_F(JournalTest, WaitingForAnUnknownOperationOrForLogThroughWaitForIsRefused) {
    CallExpectation unknown;
    unknown.call = static_cast<HostCall>(26);
    EXPECT_EQ(host.journal().waitFor(unknown, kArrives), HarnessStatus::UnknownSlot);
    CallExpectation log;
    log.call = HostCall::Log;
    EXPECT_EQ(host.journal().waitFor(log, kArrives), HarnessStatus::UnknownSlot);
}

TEST_F(JournalTest, LogWaitMatchesExactTextAndOptionallySeverity) {
    loggerApi.log(&logger, 5, "BQLColloqPlugin v.3.8: Connected to Colloq successfully");
    LogExpectation expected;
    expected.text = "Connected to Colloq successfully";
    EXPECT_EQ(host.journal().waitForLog(expected, kStaysAway), HarnessStatus::TimedOut);
    expected.match = TextMatch::Contains;
    EXPECT_EQ(host.journal().waitForLog(expected, kStaysAway), HarnessStatus::Ok);
    expected.severity = 4;
    EXPECT_EQ(host.journal().waitForLog(expected, kStaysAway), HarnessStatus::TimedOut);
    expected.severity = 5;
    RecordedCall line;
    EXPECT_EQ(host.journal().waitForLog(expected, kStaysAway, &line), HarnessStatus::Ok);
    EXPECT_EQ(line.loggerName, "Test");
}

TEST_F(JournalTest, LogWaitReturnsOnceAnotherThreadLogs) {
    std::thread pluginThread([this] { loggerApi.log(&logger, 1, "failure"); });
    RecordedCall line;
    const HarnessStatus status = waitForLog("failure", kArrives, &line);
    pluginThread.join();
    EXPECT_EQ(status, HarnessStatus::Ok);
    EXPECT_EQ(line.severity, 1);
}

}  // namespace
}  // namespace harnesstest
