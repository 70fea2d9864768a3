// reset() gives the next test a fresh client: results, calls, callbacks, loggers and journal.
#include <gtest/gtest.h>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::CallbackSlot;
using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::kCallControlVersion;
using hostharness::kClientFailure;

using ResetTest = HarnessTest;

TEST_F(ResetTest, ResetRestoresDefaultResultsAndForgetsCalls) {
    host.responses().setResult(HostCall::AnswerCall, 9);
    host.responses().setResult(HostCall::GetLogger, kClientFailure);
    host.responses().setEntryPointResult(kCallControlVersion, kClientFailure);
    ASSERT_EQ(host.responses().setCalls({{1, 7, 0, "1", "a"}}), HarnessStatus::Ok);
    host.reset();
    EXPECT_EQ(host.responses().resultOf(HostCall::AnswerCall), 0);
    EXPECT_EQ(host.responses().resultOf(HostCall::GetLogger), 0);
    int16_t entryResult = kClientFailure;
    ASSERT_EQ(host.responses().entryPointResult(kCallControlVersion, &entryResult), HarnessStatus::Ok);
    EXPECT_EQ(entryResult, 0);
    EXPECT_TRUE(host.responses().calls().empty());
}

TEST_F(ResetTest, ResetForgetsTheRegisteredCallbacksAndEmptiesTheJournal) {
    startFixture();
    ASSERT_TRUE(host.callbacks().isRegistered());
    host.reset();
    EXPECT_FALSE(host.callbacks().isRegistered());
    EXPECT_TRUE(host.journal().entries().empty());
    EXPECT_EQ(host.callbacks().fire(CallbackSlot::OnAudioMute, {}), HarnessStatus::NotRegistered);
}

TEST_F(ResetTest, RejectedCallListKeepsThePreviousOne) {
    ASSERT_EQ(host.responses().setCalls({{1, 7, 0, "1", "a"}}), HarnessStatus::Ok);
    EXPECT_EQ(host.responses().setCalls({{2, 7, 0, "2", "b"}, {3, 7, 0, std::string(40, '3'), "c"}}),
              HarnessStatus::TextTooLong);
    const auto calls = host.responses().calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].callId, 1);
}

}  // namespace
}  // namespace harnesstest
