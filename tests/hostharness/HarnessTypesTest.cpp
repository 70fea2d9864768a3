// The harness's small vocabulary: call records built from descriptions, operation and callback
// names, slot numbers and status descriptions.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "hostharness/CallDescription.h"
#include "hostharness/CallbackSlot.h"
#include "hostharness/HarnessStatus.h"
#include "hostharness/HostCall.h"

namespace harnesstest {
namespace {

using hostharness::buildCallInfo;
using hostharness::CallbackSlot;
using hostharness::HarnessStatus;
using hostharness::HostCall;

TEST(CallDescriptionTest, BuildsAZeroFilledRecordWithTerminatedTexts) {
    Accessory_CallInfo_v1_0_t record;
    std::memset(&record, 0xAB, sizeof(record));
    ASSERT_EQ(buildCallInfo({12, 9, 1, "5551234", "Ada"}, &record), HarnessStatus::Ok);
    EXPECT_EQ(record.callId, 12);
    EXPECT_EQ(record.reserved0, 0);
    EXPECT_EQ(record.callState, 9);
    EXPECT_EQ(record.conference, 1);
    EXPECT_STREQ(record.number, "5551234");
    EXPECT_STREQ(record.displayName, "Ada");
    EXPECT_EQ(record.number[32], '\0');
    EXPECT_EQ(record.opaque[7], 0);
}

TEST(CallDescriptionTest, TextsFillingTheirFieldsExactlyFit) {
    Accessory_CallInfo_v1_0_t record{};
    ASSERT_EQ(buildCallInfo({1, 0, 0, std::string(32, '9'), std::string(54, 'z')}, &record), HarnessStatus::Ok);
    EXPECT_EQ(std::strlen(record.number), 32u);
    EXPECT_EQ(std::strlen(record.displayName), 54u);
}

TEST(CallDescriptionTest, OverlongTextsAreRefusedAndChangeNothing) {
    Accessory_CallInfo_v1_0_t record{};
    record.callId = 77;
    EXPECT_EQ(buildCallInfo({1, 0, 0, std::string(33, '9'), ""}, &record), HarnessStatus::TextTooLong);
    EXPECT_EQ(buildCallInfo({1, 0, 0, "", std::string(55, 'z')}, &record), HarnessStatus::TextTooLong);
    EXPECT_EQ(record.callId, 77);
    EXPECT_EQ(buildCallInfo({1, 0, 0, "", ""}, nullptr), HarnessStatus::NullArgument);
}

TEST(HostCallTest, SlotNumbersMapToTheClientsOperationNames) {
    HostCall call = HostCall::GetCalls;
    ASSERT_EQ(hostharness::callControlSlot(4, &call), HarnessStatus::Ok);
    EXPECT_EQ(call, HostCall::AnswerCall);
    EXPECT_STREQ(hostharness::hostCallName(call), "answerCall");
    ASSERT_EQ(hostharness::callControlSlot(25, &call), HarnessStatus::Ok);
    EXPECT_STREQ(hostharness::hostCallName(call), "rejectCall");
    EXPECT_STREQ(hostharness::hostCallName(HostCall::Unused20), "unused20");
    EXPECT_STREQ(hostharness::hostCallName(HostCall::Log), "log");
    EXPECT_STREQ(hostharness::hostCallName(static_cast<HostCall>(60)), "unknown");
}

TEST(HostCallTest, SlotNumbersOutsideTheTableAreRefused) {
    HostCall call = HostCall::MuteCall;
    EXPECT_EQ(hostharness::callControlSlot(26, &call), HarnessStatus::UnknownSlot);
    EXPECT_EQ(hostharness::callControlSlot(-1, &call), HarnessStatus::UnknownSlot);
    EXPECT_EQ(call, HostCall::MuteCall);
    EXPECT_EQ(hostharness::callControlSlot(3, nullptr), HarnessStatus::NullArgument);
}

TEST(HostCallTest, TwelveSlotsAreUnusedAndThirteenResultsAreConfigurable) {
    int unused = 0;
    int configurable = 0;
    for (int slot = 0; slot < hostharness::kCallControlSlots; ++slot) {
        unused += hostharness::isUnusedSlot(static_cast<HostCall>(slot)) ? 1 : 0;
        configurable += hostharness::hasConfigurableResult(static_cast<HostCall>(slot)) ? 1 : 0;
    }
    EXPECT_EQ(unused, 12);
    EXPECT_EQ(configurable, 13);
    EXPECT_TRUE(hostharness::hasConfigurableResult(HostCall::GetLogger));
    EXPECT_FALSE(hostharness::hasConfigurableResult(HostCall::Log));
}

TEST(CallbackSlotTest, SeventeenSlotsHoldCallbacksAndSixAreEmpty) {
    int empty = 0;
    int callEvents = 0;
    for (int slot = 0; slot < hostharness::kCallbackSlots; ++slot) {
        empty += hostharness::isEmptyCallbackSlot(static_cast<CallbackSlot>(slot)) ? 1 : 0;
        callEvents += hostharness::isCallEventSlot(static_cast<CallbackSlot>(slot)) ? 1 : 0;
    }
    EXPECT_EQ(empty, 6);
    EXPECT_EQ(callEvents, 9);
    EXPECT_STREQ(hostharness::callbackSlotName(CallbackSlot::OnIncoming), "onIncoming");
    EXPECT_STREQ(hostharness::callbackSlotName(CallbackSlot::NotifySubscriberNumbers), "notifySubscriberNumbers");
    EXPECT_STREQ(hostharness::callbackSlotName(static_cast<CallbackSlot>(23)), "unknown");
}

TEST(HarnessStatusTest, EveryStatusHasItsOwnDescription) {
    std::set<std::string> descriptions;
    const int kStatuses = static_cast<int>(HarnessStatus::ThreadNotStarted) + 1;
    for (int status = 0; status < kStatuses; ++status) {
        descriptions.insert(hostharness::describe(static_cast<HarnessStatus>(status)));
    }
    EXPECT_EQ(descriptions.size(), static_cast<std::size_t>(kStatuses));
    EXPECT_STREQ(hostharness::describe(HarnessStatus::Ok), "ok");
}

}  // namespace
}  // namespace harnesstest
