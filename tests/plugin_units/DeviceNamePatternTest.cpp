// The name in a client's device identifier is matched as a pattern against the runtime's
// product names. Whatever the client sends, the lookup must come back: a name built to make a
// backtracking matcher run for ages is matched like any other, and a name too long to be a
// device's, or written in syntax that RE2 would read otherwise than ECMAScript, is refused like
// other invalid patterns.
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "DirectHandlerFixture.h"
#include "handlers/DeviceIdentity.h"
#include "handlers/DeviceNamePattern.h"
#include "hostharness/HostileDeviceNames.h"
#include "hostharness/SmallStackThread.h"

namespace {

bool matches(const std::string& name, const std::string& productName) {
    return DeviceNamePattern(name).matchesWhole(productName);
}

std::regex_constants::error_type refusalOf(const std::string& name) {
    try {
        DeviceNamePattern pattern(name);
    } catch (const std::regex_error& refused) {
        return refused.code();
    }
    ADD_FAILURE() << "not refused: " << name;
    return std::regex_constants::error_type{};
}

// Twelve nested stars before a character the product name lacks: a backtracking matcher
// tries every way of splitting the name among them before it gives up.
std::string nestedStarsName() {
    std::string name;
    for (int group = 0; group < 12; ++group) {
        name += "(.*)*";
    }
    return name + "#";
}

TEST(DeviceNamePatternMatch, MatchesTheWholeProductNameOnly) {
    EXPECT_TRUE(matches("Model.5", "Model_5"));
    EXPECT_TRUE(matches("Model.5", "Model-5"));
    EXPECT_FALSE(matches("Model", "Model 5"));
    EXPECT_FALSE(matches("odel 5", "Model 5"));
    EXPECT_FALSE(matches("model 5", "Model 5"));
}

TEST(DeviceNamePatternMatch, DotStandsForOneByteOfTheProductName) {
    // "é" is two bytes in the product name as the runtime's text converts to narrow.
    EXPECT_FALSE(matches("Mod.l 5", "Mod\xc3\xa9l 5"));
    EXPECT_TRUE(matches("Mod..l 5", "Mod\xc3\xa9l 5"));
    EXPECT_FALSE(matches("Model.5", "Model\n5"));
}

TEST(DeviceNamePatternMatch, EcmaScriptConstructsMatchAsBefore) {
    EXPECT_TRUE(matches("(?:Model|Mod) \\d+\\.\\w\\s[A-Z]{2,3}x?", "Model 51.X ABCx"));
    EXPECT_TRUE(matches("[^a-z ]+ [[:digit:]]", "MODEL 5"));
    EXPECT_TRUE(matches("Model .*?5", "Model 555"));
    EXPECT_TRUE(matches("\\bModel\\b 5\\{x\\}", "Model 5{x}"));
    EXPECT_TRUE(matches("Model{1} 5{0,}", "Model 555"));
}

TEST(DeviceNamePatternMatch, NestedRepetitionsThatCannotMatchAreRefutedWithoutBacktracking) {
    EXPECT_FALSE(matches(nestedStarsName(), "Model 5.1-X.2 Wireless with a long product name of many words"));
}

TEST(DeviceNamePatternMatch, NameOfTheLengthBoundIsCompiledAndOneByteMoreIsRefused) {
    std::string name = "Model 5x??";
    while (name.size() < kMaximumDeviceNameLength) {
        name += "x?";
    }
    ASSERT_EQ(name.size(), kMaximumDeviceNameLength);
    EXPECT_TRUE(matches(name, "Model 5"));
    EXPECT_EQ(refusalOf(name + "?"), std::regex_constants::error_space);
}

TEST(DeviceNamePatternMatch, InvalidPatternsAreRefusedWithTheStandardLibrarysCodes) {
    EXPECT_EQ(refusalOf("Model (5"), std::regex_constants::error_paren);
    EXPECT_EQ(refusalOf("Model 5)"), std::regex_constants::error_paren);
    EXPECT_EQ(refusalOf("Model [5"), std::regex_constants::error_brack);
    EXPECT_EQ(refusalOf("Model [5-1]"), std::regex_constants::error_range);
    EXPECT_EQ(refusalOf("*Model 5"), std::regex_constants::error_badrepeat);
    EXPECT_EQ(refusalOf("Model 5\\"), std::regex_constants::error_escape);
    EXPECT_EQ(refusalOf("Model 5{1001}"), std::regex_constants::error_badbrace);
}

TEST(DeviceNamePatternMatch, WhatRe2CannotMatchIsRefused) {
    EXPECT_EQ(refusalOf("(Model) \\1"), std::regex_constants::error_backref);
    EXPECT_EQ(refusalOf("(?=Model)Model 5"), std::regex_constants::error_paren);
    EXPECT_EQ(refusalOf("(?!Mic)Model 5"), std::regex_constants::error_paren);
}

TEST(DeviceNamePatternMatch, SyntaxRe2ReadsOtherwiseThanEcmaScriptIsRefused) {
    // RE2 would take each as a literal, a flag, a quote or a class; ECMAScript refuses them.
    EXPECT_EQ(refusalOf("Model {5"), std::regex_constants::error_badbrace);
    EXPECT_EQ(refusalOf("Model 5{,2}"), std::regex_constants::error_badbrace);
    EXPECT_EQ(refusalOf("(?i)model 5"), std::regex_constants::error_paren);
    EXPECT_EQ(refusalOf("(?P<n>Model) 5"), std::regex_constants::error_paren);
    EXPECT_EQ(refusalOf("\\QModel 5\\E"), std::regex_constants::error_escape);
    EXPECT_EQ(refusalOf("\\pL+ 5"), std::regex_constants::error_escape);
    EXPECT_EQ(refusalOf("\\AModel 5\\z"), std::regex_constants::error_escape);
    EXPECT_EQ(refusalOf("Model \\x{35}"), std::regex_constants::error_escape);
    // "[]" matches nothing and "[^]" any character in ECMAScript; RE2 reads "]" as a member.
    EXPECT_EQ(refusalOf("Model []5]"), std::regex_constants::error_brack);
    EXPECT_EQ(refusalOf("Model [^]"), std::regex_constants::error_brack);
}

TEST(DeviceNamePatternMatch, EscapedSyntaxCharactersAreLiterals) {
    EXPECT_TRUE(matches("Model \\{5\\} \\(\\?i\\) \\[\\]", "Model {5} (?i) []"));
    EXPECT_TRUE(matches("Model [{(?]+", "Model {(?"));
}

TEST(DeviceNamePatternMatch, EveryHostileNameIsMatchedOrRefusedOnASmallStack) {
    const auto matchEach = [] {
        for (const hostharness::HostileDeviceName& hostile : hostharness::hostileDeviceNames()) {
            SCOPED_TRACE(hostile.label);
            const std::string name = GetNameFromColloqPath(hostile.identifier.c_str());
            bool refused = false;
            bool matched = true;
            try {
                matched = matches(name, "Model 5.1 Wireless");
            } catch (const std::regex_error&) {
                refused = true;
            }
            EXPECT_TRUE(refused || !matched);
            if (name.size() > kMaximumDeviceNameLength) {
                EXPECT_TRUE(refused);
            }
        }
    };
    ASSERT_EQ(hostharness::runOnThreadWithStack(hostharness::kSecondaryThreadStack, matchEach),
              hostharness::HarnessStatus::Ok);
}

class DeviceNamePattern : public DirectHandlerTest {
protected:
    void connect() { ASSERT_EQ(handler().connectToVexil(&queue), 0); }
};

TEST_F(DeviceNamePattern, NameWithNestedRepetitionsThatCannotMatchFindsNoDevice) {
    plug(0x1a2b, "A1", "Model 5.1-X.2 Wireless", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId(("AppleUSBAudioEngine:Brimquell:" + nestedStarsName()).c_str()), "");
}

TEST_F(DeviceNamePattern, NameWithNestedRepetitionsStillMatchesAsAPattern) {
    plug(0x1a2b, "A1", "Model 7", false);
    const std::string path = plug(0x0c3d, "B2", "Model 5.1-X.2 Wireless", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:(Mo(d|e|l)*)*.*5(.*)*Wireless"), path);
}

TEST_F(DeviceNamePattern, NameWithAnOverlongBackReferenceIsRefusedAsAPattern) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_THROW(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:(Model 5)\\12345678901234567890123"),
                 std::regex_error);
}

TEST_F(DeviceNamePattern, NameWithAnOverlongRepetitionCountIsRefusedAsAPattern) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_THROW(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model 5{0,12345678901234567890123}"),
                 std::regex_error);
    EXPECT_THROW(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model 5{12345678901234567890123}"),
                 std::regex_error);
}

TEST_F(DeviceNamePattern, NameWithAnEscapedBraceBeforeALongNumberIsMatchedLiterally) {
    const std::string path = plug(0x1a2b, "A1", "Model {12345678901234567890123}", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model \\{12345678901234567890123\\}"),
              path);
}

TEST_F(DeviceNamePattern, NameLongerThanTheBoundIsRefusedAsAPatternWhenADeviceIsListed) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    const std::string name(kMaximumDeviceNameLength + 1, 'A');
    EXPECT_THROW(handler().GetPathFromColloqId(("AppleUSBAudioEngine:Brimquell:" + name).c_str()), std::regex_error);
}

TEST_F(DeviceNamePattern, InvalidNameWithNoDeviceListedIsNotFoundLikeAnyOther) {
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model (5"), "");
    EXPECT_EQ(log.entriesOf("GetPathFromColloqId").size(), 1u);
}

}  // namespace
