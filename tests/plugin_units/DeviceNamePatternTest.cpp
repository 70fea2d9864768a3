// The name in a client's device identifier is matched as a pattern against the runtime's
// product names. Whatever the client sends, the lookup must come back: a name built to make a
// backtracking matcher run for ages is matched like any other, and a count or back-reference
// too long for any pattern is refused like other invalid patterns.
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "DirectHandlerFixture.h"

namespace {

class DeviceNamePattern : public DirectHandlerTest {
protected:
    void connect() { ASSERT_EQ(handler().connectToVexil(&queue), 0); }

    // Twelve nested stars before a character the product name lacks: a backtracking matcher
    // tries every way of splitting the name among them before it gives up.
    static std::string nestedStarsName() {
        std::string name;
        for (int group = 0; group < 12; ++group) {
            name += "(.*)*";
        }
        return name + "#";
    }
};

TEST_F(DeviceNamePattern, NameWithNestedRepetitionsThatCannotMatchFindsNoDevice) {
#if !defined(__GLIBCXX__)
    GTEST_SKIP() << "only libstdc++ offers a matcher that does not backtrack";
#endif
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

}  // namespace
