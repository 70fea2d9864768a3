// The client's call-control slots as a plug-in calls them: each is journalled with its arguments
// in order, answers with its configured result, and refuses null arguments.
#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::CallDescription;
using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::kCallControlVersion;
using hostharness::kClientFailure;
using hostharness::RecordedCall;

class CallControlTableTest : public HarnessTest {
protected:
    void SetUp() override {
        HarnessTest::SetUp();
        ASSERT_EQ(host.entryPoint()(kCallControlVersion, &table), 0);
        host.journal().clear();
    }

    RecordedCall onlyEntry() {
        const auto entries = host.journal().entries();
        EXPECT_EQ(entries.size(), 1u);
        return entries.empty() ? RecordedCall{} : entries.front();
    }

    Accessory_CallControlAPI_v1_0_t table{};
};

struct DeviceSlot {
    HostCall call;
    int16_t (*Accessory_CallControlAPI_v1_0_t::*slot)(const char*);
};

const DeviceSlot kDeviceSlots[] = {
    {HostCall::AnswerCall, &Accessory_CallControlAPI_v1_0_t::answerCall},
    {HostCall::EndCall, &Accessory_CallControlAPI_v1_0_t::endCall},
    {HostCall::MuteCall, &Accessory_CallControlAPI_v1_0_t::muteCall},
    {HostCall::UnmuteCall, &Accessory_CallControlAPI_v1_0_t::unmuteCall},
    {HostCall::HoldCall, &Accessory_CallControlAPI_v1_0_t::holdCall},
    {HostCall::ResumeCall, &Accessory_CallControlAPI_v1_0_t::resumeCall},
    {HostCall::ActiveDeviceChanged, &Accessory_CallControlAPI_v1_0_t::activeDeviceChanged},
    {HostCall::ReleaseActiveDevice, &Accessory_CallControlAPI_v1_0_t::releaseActiveDevice},
    {HostCall::RejectCall, &Accessory_CallControlAPI_v1_0_t::rejectCall},
};

TEST_F(CallControlTableTest, EveryDeviceOperationIsJournalledWithItsDeviceInOrder) {
    for (const DeviceSlot& operation : kDeviceSlots) {
        const std::string device = std::string("dev-") + hostharness::hostCallName(operation.call);
        EXPECT_EQ((table.*operation.slot)(device.c_str()), 0);
    }
    const auto entries = host.journal().entries();
    ASSERT_EQ(entries.size(), std::size(kDeviceSlots));
    for (std::size_t i = 0; i < entries.size(); ++i) {
        SCOPED_TRACE(hostharness::hostCallName(kDeviceSlots[i].call));
        EXPECT_EQ(entries[i].call, kDeviceSlots[i].call);
        EXPECT_EQ(entries[i].device, std::string("dev-") + hostharness::hostCallName(kDeviceSlots[i].call));
        EXPECT_EQ(entries[i].sequence, i + 1);
        EXPECT_FALSE(entries[i].nullArgument);
    }
}

TEST_F(CallControlTableTest, EveryDeviceOperationAnswersWithItsConfiguredResult) {
    int16_t result = 10;
    for (const DeviceSlot& operation : kDeviceSlots) {
        ASSERT_EQ(host.responses().setResult(operation.call, result++), HarnessStatus::Ok);
    }
    result = 10;
    for (const DeviceSlot& operation : kDeviceSlots) {
        EXPECT_EQ((table.*operation.slot)("dev"), result++) << hostharness::hostCallName(operation.call);
    }
}

TEST_F(CallControlTableTest, DeviceOperationWithNullDeviceFailsAndIsJournalledAsRefused) {
    host.responses().setResult(HostCall::EndCall, 3);
    EXPECT_EQ(table.endCall(nullptr), kClientFailure);
    const RecordedCall entry = onlyEntry();
    EXPECT_EQ(entry.call, HostCall::EndCall);
    EXPECT_TRUE(entry.nullArgument);
}

TEST_F(CallControlTableTest, MakeCallRecordsDeviceAndNumber) {
    host.responses().setResult(HostCall::MakeCall, 2);
    EXPECT_EQ(table.makeCall("hid/vid_2f0c&pid_ac27/S1", "5551234"), 2);
    const RecordedCall entry = onlyEntry();
    EXPECT_EQ(entry.call, HostCall::MakeCall);
    EXPECT_EQ(entry.device, "hid/vid_2f0c&pid_ac27/S1");
    EXPECT_EQ(entry.number, "5551234");
}

TEST_F(CallControlTableTest, MakeCallWithNullNumberFails) {
    EXPECT_EQ(table.makeCall("dev", nullptr), kClientFailure);
    EXPECT_TRUE(onlyEntry().nullArgument);
}

TEST_F(CallControlTableTest, SendDtmfRecordsDeviceAndKey) {
    EXPECT_EQ(table.sendDtmf("dev", '#'), 0);
    const RecordedCall entry = onlyEntry();
    EXPECT_EQ(entry.call, HostCall::SendDtmf);
    EXPECT_EQ(entry.device, "dev");
    EXPECT_EQ(entry.key, '#');
}

TEST_F(CallControlTableTest, SendDtmfAnswersWithItsConfiguredResultAndRefusesANullDevice) {
    ASSERT_EQ(host.responses().setResult(HostCall::SendDtmf, 4), HarnessStatus::Ok);
    EXPECT_EQ(table.sendDtmf("dev", '5'), 4);
    EXPECT_EQ(table.sendDtmf(nullptr, '6'), kClientFailure);
    const auto entries = host.journal().entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_FALSE(entries[0].nullArgument);
    EXPECT_EQ(entries[0].key, '5');
    EXPECT_TRUE(entries[1].nullArgument);
    EXPECT_EQ(entries[1].call, HostCall::SendDtmf);
    EXPECT_EQ(entries[1].key, '6');
}

TEST_F(CallControlTableTest, MakeCallWithNullDeviceFails) {
    ASSERT_EQ(host.responses().setResult(HostCall::MakeCall, 2), HarnessStatus::Ok);
    EXPECT_EQ(table.makeCall(nullptr, "5551234"), kClientFailure);
    const RecordedCall entry = onlyEntry();
    EXPECT_EQ(entry.call, HostCall::MakeCall);
    EXPECT_TRUE(entry.nullArgument);
    EXPECT_EQ(entry.number, "");
}

TEST_F(CallControlTableTest, UnusedSlotsRecordThatTheyWereCalled) {
    const HostCall unused[] = {HostCall::Unused1,  HostCall::Unused2,  HostCall::Unused5,  HostCall::Unused10,
                               HostCall::Unused11, HostCall::Unused12, HostCall::Unused13, HostCall::Unused14,
                               HostCall::Unused15, HostCall::Unused16, HostCall::Unused17, HostCall::Unused20};
    void (*slots[26])();
    std::memcpy(slots, &table, sizeof(table));
    for (const HostCall call : unused) {
        slots[static_cast<int>(call)]();
    }
    const auto entries = host.journal().entries();
    ASSERT_EQ(entries.size(), std::size(unused));
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i].call, unused[i]);
        EXPECT_TRUE(hostharness::isUnusedSlot(entries[i].call));
    }
}

TEST_F(CallControlTableTest, GetCallsCopiesTheConfiguredCallsIntoTheCallersRecords) {
    ASSERT_EQ(host.responses().setCalls({{1, 7, 0, "5551234", "Ada"}, {2, 10, 1, "5559876", "Grace"}}),
              HarnessStatus::Ok);
    Accessory_CallInfo_v1_0_t records[10] = {};
    Accessory_CallInfo_v1_0_t* pointers[10];
    for (int i = 0; i < 10; ++i) {
        pointers[i] = &records[i];
    }
    EXPECT_EQ(table.getCalls(pointers, 10), 2);
    EXPECT_EQ(records[0].callId, 1);
    EXPECT_EQ(records[0].callState, 7);
    EXPECT_STREQ(records[0].number, "5551234");
    EXPECT_STREQ(records[0].displayName, "Ada");
    EXPECT_EQ(records[1].callId, 2);
    EXPECT_EQ(records[1].conference, 1);
    EXPECT_STREQ(records[1].displayName, "Grace");
    EXPECT_EQ(records[2].callId, 0);
    EXPECT_EQ(onlyEntry().max, 10);
}

TEST_F(CallControlTableTest, GetCallsFillsAtMostMaxRecords) {
    ASSERT_EQ(host.responses().setCalls({{1, 7, 0, "1", "a"}, {2, 7, 0, "2", "b"}, {3, 7, 0, "3", "c"}}),
              HarnessStatus::Ok);
    Accessory_CallInfo_v1_0_t records[3] = {};
    Accessory_CallInfo_v1_0_t* pointers[3] = {&records[0], &records[1], &records[2]};
    EXPECT_EQ(table.getCalls(pointers, 2), 2);
    EXPECT_EQ(records[1].callId, 2);
    EXPECT_EQ(records[2].callId, 0);
}

TEST_F(CallControlTableTest, GetCallsWithoutCallsFillsNothing) {
    Accessory_CallInfo_v1_0_t record{};
    Accessory_CallInfo_v1_0_t* pointers[1] = {&record};
    EXPECT_EQ(table.getCalls(pointers, 1), 0);
    EXPECT_EQ(record.callId, 0);
}

TEST_F(CallControlTableTest, GetCallsWithNullArrayOrNullRecordFillsNothing) {
    ASSERT_EQ(host.responses().setCalls({{1, 7, 0, "1", "a"}, {2, 7, 0, "2", "b"}}), HarnessStatus::Ok);
    EXPECT_EQ(table.getCalls(nullptr, 10), 0);
    Accessory_CallInfo_v1_0_t record{};
    Accessory_CallInfo_v1_0_t* pointers[2] = {&record, nullptr};
    EXPECT_EQ(table.getCalls(pointers, 2), 0);
    EXPECT_EQ(record.callId, 0);
    for (const RecordedCall& entry : host.journal().entries()) {
        EXPECT_TRUE(entry.nullArgument);
    }
}

TEST_F(CallControlTableTest, GetCallsWithNegativeMaxFillsNothing) {
    ASSERT_EQ(host.responses().setCalls({{1, 7, 0, "1", "a"}}), HarnessStatus::Ok);
    Accessory_CallInfo_v1_0_t record{};
    Accessory_CallInfo_v1_0_t* pointers[1] = {&record};
    EXPECT_EQ(table.getCalls(pointers, -3), 0);
    EXPECT_EQ(record.callId, 0);
}

TEST_F(CallControlTableTest, ResultsOfOperationsWithoutOneCannotBeConfigured) {
    EXPECT_EQ(host.responses().setResult(HostCall::GetCalls, 1), HarnessStatus::NoResult);
    EXPECT_EQ(host.responses().setResult(HostCall::Unused5, 1), HarnessStatus::NoResult);
    EXPECT_EQ(host.responses().setResult(HostCall::Log, 1), HarnessStatus::NoResult);
    EXPECT_EQ(host.responses().setResult(HostCall::EntryPoint, 1), HarnessStatus::NoResult);
    EXPECT_EQ(host.responses().setResult(static_cast<HostCall>(26), 1), HarnessStatus::UnknownSlot);
    EXPECT_EQ(host.responses().setResult(static_cast<HostCall>(-1), 1), HarnessStatus::UnknownSlot);
}

TEST_F(CallControlTableTest, RefusedResultSettingsLeaveEveryResultAsItWas) {
    const auto configuredResults = [this] {
        std::vector<int16_t> results;
        for (int32_t slot = 0; slot < hostharness::kCallControlSlots; ++slot) {
            results.push_back(host.responses().resultOf(static_cast<HostCall>(slot)));
        }
        results.push_back(host.responses().resultOf(HostCall::GetLogger));
        for (const Accessory_APIVersion_t version : {kCallControlVersion, hostharness::kLoggerVersion}) {
            int16_t result = 0;
            EXPECT_EQ(host.responses().entryPointResult(version, &result), HarnessStatus::Ok);
            results.push_back(result);
        }
        return results;
    };
    int16_t result = 1;
    for (int32_t slot = 0; slot < hostharness::kCallControlSlots; ++slot) {
        host.responses().setResult(static_cast<HostCall>(slot), result++);
    }
    ASSERT_EQ(host.responses().setResult(HostCall::GetLogger, 40), HarnessStatus::Ok);
    ASSERT_EQ(host.responses().setEntryPointResult(kCallControlVersion, 41), HarnessStatus::Ok);
    ASSERT_EQ(host.responses().setEntryPointResult(hostharness::kLoggerVersion, 42), HarnessStatus::Ok);
    const std::vector<int16_t> before = configuredResults();

    EXPECT_EQ(host.responses().setResult(HostCall::GetCalls, -7), HarnessStatus::NoResult);
    EXPECT_EQ(host.responses().setResult(HostCall::Unused20, -7), HarnessStatus::NoResult);
    EXPECT_EQ(host.responses().setResult(HostCall::Log, -7), HarnessStatus::NoResult);
    EXPECT_EQ(host.responses().setResult(static_cast<HostCall>(26), -7), HarnessStatus::UnknownSlot);
    EXPECT_EQ(host.responses().setResult(static_cast<HostCall>(-1), -7), HarnessStatus::UnknownSlot);
    EXPECT_EQ(host.responses().setEntryPointResult(0x10003u, -7), HarnessStatus::UnknownSlot);

    EXPECT_EQ(configuredResults(), before);
    EXPECT_EQ(table.answerCall("dev"), 5);
    EXPECT_EQ(host.journal().entries().size(), 1u);
}

TEST_F(CallControlTableTest, SequenceNumbersStartAtOneAgainAfterClear) {
    table.answerCall("a");
    table.answerCall("b");
    EXPECT_EQ(host.journal().lastSequence(), 2u);
    host.journal().clear();
    EXPECT_EQ(host.journal().lastSequence(), 0u);
    table.answerCall("c");
    EXPECT_EQ(onlyEntry().sequence, 1u);
}

}  // namespace
}  // namespace harnesstest
