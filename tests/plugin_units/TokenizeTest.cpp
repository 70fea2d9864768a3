#include "plugin/Tokenize.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Tokenize, RunsOfDelimitersCountAsOneAndEndsGiveNoEmptyTokens) {
    EXPECT_THAT(Tokenize("..3..8.", "."), ElementsAre("3", "8"));
}

TEST(Tokenize, AnyCharacterOfTheDelimiterSetSplits) {
    EXPECT_THAT(Tokenize("a:b.c;d", ":."), ElementsAre("a", "b", "c;d"));
}

TEST(Tokenize, TextWithoutDelimitersIsOneToken) { EXPECT_THAT(Tokenize("Model 5", ":"), ElementsAre("Model 5")); }

TEST(Tokenize, EmptyTextGivesNoTokens) { EXPECT_THAT(Tokenize("", "."), IsEmpty()); }

TEST(Tokenize, OnlyDelimitersGiveNoTokens) { EXPECT_THAT(Tokenize("....", "."), IsEmpty()); }

TEST(TokenizeVersion, FourPartsYieldTheFourNumbers) {
    int major = 0, minor = 0, build = 0, revision = 0;
    EXPECT_EQ(TokenizeVersion(major, minor, build, revision, "3.8.51535.41614"), 0);
    EXPECT_EQ(major, 3);
    EXPECT_EQ(minor, 8);
    EXPECT_EQ(build, 51535);
    EXPECT_EQ(revision, 41614);
}

// Outputs start at a marker so that "untouched" can be seen.
void expectRejectedUntouched(const std::string& version) {
    int major = -7, minor = -7, build = -7, revision = -7;
    EXPECT_EQ(TokenizeVersion(major, minor, build, revision, version), -1) << version;
    EXPECT_EQ(major, -7) << version;
    EXPECT_EQ(minor, -7) << version;
    EXPECT_EQ(build, -7) << version;
    EXPECT_EQ(revision, -7) << version;
}

TEST(TokenizeVersion, ThreePartsReturnMinusOneAndLeaveOutputsUntouched) { expectRejectedUntouched("3.8.51535"); }

TEST(TokenizeVersion, FivePartsReturnMinusOneAndLeaveOutputsUntouched) { expectRejectedUntouched("3.8.51535.41614.1"); }

TEST(TokenizeVersion, EmptyStringReturnsMinusOne) { expectRejectedUntouched(""); }

TEST(TokenizeVersion, FourDotsReturnMinusOne) { expectRejectedUntouched("...."); }

TEST(TokenizeVersion, RunsOfDotsStillMakeFourParts) {
    int major = 0, minor = 0, build = 0, revision = 0;
    EXPECT_EQ(TokenizeVersion(major, minor, build, revision, ".9..6.0.0."), 0);
    EXPECT_EQ(major, 9);
    EXPECT_EQ(minor, 6);
}

TEST(TokenizeVersion, TrailingNonDigitsOfAPartAreIgnored) {
    int major = 0, minor = 0, build = 0, revision = 0;
    EXPECT_EQ(TokenizeVersion(major, minor, build, revision, "3.8b.1x.2"), 0);
    EXPECT_EQ(minor, 8);
    EXPECT_EQ(build, 1);
    EXPECT_EQ(revision, 2);
}

TEST(TokenizeVersion, LeadingBlanksAndASignAreAccepted) {
    int major = 0, minor = 0, build = 0, revision = 0;
    EXPECT_EQ(TokenizeVersion(major, minor, build, revision, " 3.-8.+5.0"), 0);
    EXPECT_EQ(major, 3);
    EXPECT_EQ(minor, -8);
    EXPECT_EQ(build, 5);
}

TEST(TokenizeVersion, PartWithoutLeadingDigitsThrowsInvalidArgument) {
    int major = 0, minor = 0, build = 0, revision = 0;
    EXPECT_THROW(TokenizeVersion(major, minor, build, revision, "3.x8.1.2"), std::invalid_argument);
}

TEST(TokenizeVersion, PartOutOfRangeForIntThrowsOutOfRange) {
    int major = 0, minor = 0, build = 0, revision = 0;
    EXPECT_THROW(TokenizeVersion(major, minor, build, revision, "3.8.99999999999.1"), std::out_of_range);
}

}  // namespace
