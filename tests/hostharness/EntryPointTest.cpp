// The client's entry point: which tables it fills, for which versions, and the failures a test
// can inject, both called directly and as the fixture plug-in sees them.
#include <gtest/gtest.h>

#include <cstring>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::kCallControlVersion;
using hostharness::kClientFailure;
using hostharness::kLoggerVersion;
using hostharness::RecordedCall;

using EntryPointTest = HarnessTest;

bool isAllZero(const void* data, std::size_t size) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < size; ++i) {
        if (bytes[i] != 0) {
            return false;
        }
    }
    return true;
}

TEST_F(EntryPointTest, CallControlVersionFillsAll26Slots) {
    Accessory_CallControlAPI_v1_0_t table{};
    EXPECT_EQ(host.entryPoint()(kCallControlVersion, &table), 0);
    void (*slots[26])();
    std::memcpy(slots, &table, sizeof(table));
    for (int slot = 0; slot < 26; ++slot) {
        EXPECT_NE(slots[slot], nullptr) << "slot " << slot;
    }
}

TEST_F(EntryPointTest, LoggerVersionFillsBothLoggerSlots) {
    Accessory_LoggerAPI_v1_0_t table{};
    EXPECT_EQ(host.entryPoint()(kLoggerVersion, &table), 0);
    EXPECT_NE(table.getLogger, nullptr);
    EXPECT_NE(table.log, nullptr);
}

TEST_F(EntryPointTest, EveryFetchIsJournalledWithVersionAndTable) {
    Accessory_LoggerAPI_v1_0_t table{};
    host.entryPoint()(kLoggerVersion, &table);
    const auto entries = host.journal().entriesOf(HostCall::EntryPoint);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].version, kLoggerVersion);
    EXPECT_EQ(entries[0].table, &table);
    EXPECT_EQ(entries[0].sequence, 1u);
}

TEST_F(EntryPointTest, UnknownVersionFailsAndFillsNothing) {
    Accessory_CallControlAPI_v1_0_t table{};
    EXPECT_EQ(host.entryPoint()(0x10003u, &table), kClientFailure);
    EXPECT_EQ(host.entryPoint()(0u, &table), kClientFailure);
    EXPECT_TRUE(isAllZero(&table, sizeof(table)));
    EXPECT_EQ(host.journal().countOf(HostCall::EntryPoint), 2u);
}

TEST_F(EntryPointTest, NullTableFailsAndIsJournalledAsRefused) {
    EXPECT_EQ(host.entryPoint()(kCallControlVersion, nullptr), kClientFailure);
    const auto entries = host.journal().entriesOf(HostCall::EntryPoint);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_TRUE(entries[0].nullArgument);
}

TEST_F(EntryPointTest, ConfiguredFailureLeavesTheTableUntouched) {
    ASSERT_EQ(host.responses().setEntryPointResult(kCallControlVersion, kClientFailure), HarnessStatus::Ok);
    Accessory_CallControlAPI_v1_0_t callControl{};
    EXPECT_EQ(host.entryPoint()(kCallControlVersion, &callControl), kClientFailure);
    EXPECT_TRUE(isAllZero(&callControl, sizeof(callControl)));
    Accessory_LoggerAPI_v1_0_t logger{};
    EXPECT_EQ(host.entryPoint()(kLoggerVersion, &logger), 0);
    EXPECT_NE(logger.log, nullptr);
}

TEST_F(EntryPointTest, ConfiguredNonFailureResultIsReturnedAfterFilling) {
    ASSERT_EQ(host.responses().setEntryPointResult(kLoggerVersion, 7), HarnessStatus::Ok);
    Accessory_LoggerAPI_v1_0_t logger{};
    EXPECT_EQ(host.entryPoint()(kLoggerVersion, &logger), 7);
    EXPECT_NE(logger.getLogger, nullptr);
}

TEST_F(EntryPointTest, ResultForAnUnknownVersionCannotBeConfigured) {
    EXPECT_EQ(host.responses().setEntryPointResult(0x20001u, 0), HarnessStatus::UnknownSlot);
    int16_t result = 0;
    EXPECT_EQ(host.responses().entryPointResult(0x20001u, &result), HarnessStatus::UnknownSlot);
    EXPECT_EQ(host.responses().entryPointResult(kLoggerVersion, nullptr), HarnessStatus::NullArgument);
}

TEST_F(EntryPointTest, PluginFetchesCallControlThenLoggerAndGetsItsLogger) {
    startFixture();
    const auto fetches = host.journal().entriesOf(HostCall::EntryPoint);
    ASSERT_EQ(fetches.size(), 2u);
    EXPECT_EQ(fetches[0].version, kCallControlVersion);
    EXPECT_EQ(fetches[1].version, kLoggerVersion);
    const auto loggers = host.journal().entriesOf(HostCall::GetLogger);
    ASSERT_EQ(loggers.size(), 1u);
    EXPECT_EQ(loggers[0].loggerName, "Fixture");
    RecordedCall line;
    ASSERT_EQ(waitForLog("Fixture initialized", kArrives, &line), HarnessStatus::Ok);
    EXPECT_EQ(line.loggerName, "Fixture");
    EXPECT_EQ(line.severity, 4);
}

TEST_F(EntryPointTest, PluginWhoseCallControlFetchFailsGoesNoFurther) {
    host.responses().setEntryPointResult(kCallControlVersion, kClientFailure);
    startFixture();
    const auto entries = host.journal().entries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].call, HostCall::EntryPoint);
    EXPECT_FALSE(host.callbacks().isRegistered());
}

TEST_F(EntryPointTest, PluginWhoseLoggerFetchFailsStillRegistersButLogsNothing) {
    host.responses().setEntryPointResult(kLoggerVersion, kClientFailure);
    startFixture();
    EXPECT_TRUE(host.callbacks().isRegistered());
    EXPECT_EQ(host.journal().countOf(HostCall::GetLogger), 0u);
    EXPECT_EQ(host.journal().countOf(HostCall::Log), 0u);
}

TEST_F(EntryPointTest, PluginWhoseGetLoggerFailsStillRegistersButLogsNothing) {
    host.responses().setResult(HostCall::GetLogger, kClientFailure);
    startFixture();
    EXPECT_TRUE(host.callbacks().isRegistered());
    EXPECT_EQ(host.journal().countOf(HostCall::GetLogger), 1u);
    EXPECT_EQ(host.journal().countOf(HostCall::Log), 0u);
}

}  // namespace
}  // namespace harnesstest
