#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <cstring>

#include "appledouble/AppleDouble.h"

namespace {

class Values : public ::testing::Test {
protected:
    void SetUp() override { baseline = appledouble::liveObjectCount(); }
    void TearDown() override {
        EXPECT_EQ(appledouble::liveObjectCount(), baseline) << "objects leaked";
        EXPECT_EQ(appledouble::takeMisuseCount(), 0u);
    }

    std::size_t baseline = 0;
};

TEST_F(Values, AsciiStringIsMadeAndFreedByItsOneRelease) {
    CFStringRef name = CFStringCreateWithCString(kCFAllocatorDefault, "com.bqlhub.hub", kCFStringEncodingASCII);

    ASSERT_NE(name, nullptr);
    EXPECT_EQ(appledouble::liveObjectCount(), baseline + 1);
    CFRelease(name);
}

TEST_F(Values, StringWithBytesOutsideAsciiIsRefusedWithNull) {
    EXPECT_EQ(CFStringCreateWithCString(kCFAllocatorDefault, "caf\xc3\xa9", kCFStringEncodingASCII), nullptr);
}

TEST_F(Values, AsciiEncodingHasApplesValue) { EXPECT_EQ(kCFStringEncodingASCII, 0x0600); }

TEST_F(Values, DataCopiesItsBytes) {
    UInt8 bytes[] = {1, 2, 3};
    CFDataRef data = CFDataCreate(kCFAllocatorDefault, bytes, sizeof bytes);
    bytes[0] = 9;

    ASSERT_NE(data, nullptr);
    ASSERT_EQ(CFDataGetLength(data), 3);
    EXPECT_EQ(std::memcmp(CFDataGetBytePtr(data), "\x01\x02\x03", 3), 0);
    CFRelease(data);
}

TEST_F(Values, EmptyDataHasLengthZero) {
    CFDataRef data = CFDataCreate(kCFAllocatorDefault, nullptr, 0);

    ASSERT_NE(data, nullptr);
    EXPECT_EQ(CFDataGetLength(data), 0);
    CFRelease(data);
}

TEST_F(Values, ReleasingTwiceIsCaughtAsAMisuseInsteadOfFreeingTwice) {
    CFStringRef name = CFStringCreateWithCString(kCFAllocatorDefault, "twice", kCFStringEncodingASCII);
    CFRelease(name);

    CFRelease(name);

    EXPECT_EQ(appledouble::takeMisuseCount(), 1u);
}

TEST_F(Values, ReleasingNullIsAMisuse) {
    CFRelease(nullptr);

    EXPECT_EQ(appledouble::takeMisuseCount(), 1u);
}

TEST_F(Values, NullCStringIsAMisuseAndGivesNull) {
    EXPECT_EQ(CFStringCreateWithCString(kCFAllocatorDefault, nullptr, kCFStringEncodingASCII), nullptr);
    EXPECT_EQ(appledouble::takeMisuseCount(), 1u);
}

TEST_F(Values, ReadingAStringAsDataIsAMisuse) {
    CFStringRef name = CFStringCreateWithCString(kCFAllocatorDefault, "text", kCFStringEncodingASCII);

    EXPECT_EQ(CFDataGetLength(static_cast<CFDataRef>(static_cast<const void*>(name))), 0);
    EXPECT_EQ(CFDataGetBytePtr(static_cast<CFDataRef>(static_cast<const void*>(name))), nullptr);

    EXPECT_EQ(appledouble::takeMisuseCount(), 2u);
    CFRelease(name);
}

TEST_F(Values, ReleasingTheCommonModesConstantKeepsIt) {
    CFRelease(kCFRunLoopCommonModes);
    CFRelease(kCFRunLoopCommonModes);

    EXPECT_EQ(appledouble::takeMisuseCount(), 0u);
}

}  // namespace
