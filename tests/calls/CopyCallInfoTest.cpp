#include "calls/copyCallInfo.h"

#include <cstring>

#include <gtest/gtest.h>

#include "CallRecord.h"

namespace {

TEST(CopyCallInfo, CopiesEveryFieldTheClientSet) {
    auto record = makeCallRecord(21, 9, "0301234", "Zoe", 1);
    record.reserved0 = 77;
    const unsigned char opaque[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    std::memcpy(record.opaque, opaque, sizeof opaque);
    const Accessory_CallInfo_v1_0_t copy = copyCallInfo(&record);
    EXPECT_EQ(copy.callId, 21);
    EXPECT_EQ(copy.reserved0, 77);
    EXPECT_EQ(copy.callState, 9);
    EXPECT_EQ(copy.conference, 1);
    EXPECT_STREQ(copy.number, "0301234");
    EXPECT_STREQ(copy.displayName, "Zoe");
    EXPECT_EQ(std::memcmp(copy.opaque, opaque, sizeof opaque), 0);
}

TEST(CopyCallInfo, BytesAfterATerminatorAreNotCopied) {
    auto record = makeCallRecord(1, 7, "12", "Al");
    record.number[5] = 'X';
    record.displayName[10] = 'Y';
    const Accessory_CallInfo_v1_0_t copy = copyCallInfo(&record);
    EXPECT_EQ(copy.number[5], '\0');
    EXPECT_EQ(copy.displayName[10], '\0');
}

TEST(CopyCallInfo, UnterminatedTextsStayInsideTheirFields) {
    auto record = makeCallRecord(1, 7, "", "");
    std::memset(record.number, '9', sizeof record.number);
    std::memset(record.displayName, 'Q', sizeof record.displayName);
    const Accessory_CallInfo_v1_0_t copy = copyCallInfo(&record);
    EXPECT_EQ(std::memcmp(copy.number, record.number, sizeof copy.number), 0);
    EXPECT_EQ(std::memcmp(copy.displayName, record.displayName, sizeof copy.displayName), 0);
    EXPECT_EQ(copy.opaque[0], 0);  // the name did not run into the next field
}

}  // namespace
