#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bqltest/FileLines.h"
#include "bqltest/LocalLog.h"
#include "plugin/funclog.h"

namespace {

class FunclogTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(log.ready()); }

    std::vector<std::string> LinesOf(const std::string& name) {
        std::vector<std::string> found;
        for (const std::string& line : log.lines()) {
            if (line.find(" DEBUG ") != std::string::npos && line.find(name + " <> ") != std::string::npos) {
                found.push_back(line);
            }
        }
        return found;
    }

    bqltest::LocalLogCapture log;
};

// Traces its own destruction, as a traced function called by a destructor during unwinding would.
struct TracedOnDestruction {
    ~TracedOnDestruction() { funclog trace("void TracedOnDestruction::cleanUp()"); }
};

TEST_F(FunclogTest, ScopeWritesEntryThenExitFollowedByOneBlank) {
    {
        funclog trace("void Sample::normal()");
    }

    const std::vector<std::string> lines = LinesOf("void Sample::normal()");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(bqltest::endsWith(lines[0], "void Sample::normal() <> entry")) << lines[0];
    EXPECT_TRUE(bqltest::endsWith(lines[1], "void Sample::normal() <> exit ")) << lines[1];
}

TEST_F(FunclogTest, ScopeLeftByAnExceptionWritesExitOnException) {
    try {
        funclog trace("void Sample::failing()");
        throw std::runtime_error("failed");
    } catch (const std::runtime_error&) {
    }

    const std::vector<std::string> lines = LinesOf("void Sample::failing()");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(bqltest::endsWith(lines[0], " <> entry")) << lines[0];
    EXPECT_TRUE(bqltest::endsWith(lines[1], " <> exit on exception")) << lines[1];
}

TEST_F(FunclogTest, ScopeOpenedDuringUnwindingReportsItsNormalExit) {
    try {
        TracedOnDestruction cleanUp;
        throw std::runtime_error("failed");
    } catch (const std::runtime_error&) {
    }

    const std::vector<std::string> lines = LinesOf("void TracedOnDestruction::cleanUp()");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(bqltest::endsWith(lines[1], " <> exit ")) << lines[1];
}

TEST_F(FunclogTest, NestedScopesCloseInsideOut) {
    {
        funclog outer("void Sample::outer()");
        funclog inner("void Sample::inner()");
    }

    const std::vector<std::string> lines = log.lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_TRUE(bqltest::endsWith(lines[0], "void Sample::outer() <> entry"));
    EXPECT_TRUE(bqltest::endsWith(lines[1], "void Sample::inner() <> entry"));
    EXPECT_TRUE(bqltest::endsWith(lines[2], "void Sample::inner() <> exit "));
    EXPECT_TRUE(bqltest::endsWith(lines[3], "void Sample::outer() <> exit "));
}

}  // namespace
