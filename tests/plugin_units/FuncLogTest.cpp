#include "plugin/funclog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "bqltest/LocalLog.h"

namespace {

using bqltest::LocalLogCapture;
using bqltest::LocalLogEntry;
using ::testing::ElementsAre;

constexpr const char* kTraced = "int Traced::run(int)";

LocalLogEntry debugLine(const char* function, const char* message) { return {"DEBUG", function, message}; }

void leaveNormally() { funclog trace(kTraced); }

void leaveByException() {
    funclog trace(kTraced);
    throw std::runtime_error("failed");
}

// A tracer inside a destructor that runs while an exception unwinds its owner's scope.
struct TracedCleanup {
    ~TracedCleanup() { funclog trace("void TracedCleanup::cleanUp()"); }
};

void unwindThroughCleanup() {
    TracedCleanup cleanup;
    throw std::runtime_error("failed");
}

TEST(FuncLog, NormalExitWritesEntryThenExitFollowedByOneBlank) {
    LocalLogCapture log;
    ASSERT_TRUE(log.ready());
    leaveNormally();
    EXPECT_THAT(log.entries(), ElementsAre(debugLine(kTraced, "entry"), debugLine(kTraced, "exit ")));
}

TEST(FuncLog, ExitByExceptionWritesExitOnException) {
    LocalLogCapture log;
    ASSERT_TRUE(log.ready());
    EXPECT_THROW(leaveByException(), std::runtime_error);
    EXPECT_THAT(log.entries(), ElementsAre(debugLine(kTraced, "entry"), debugLine(kTraced, "exit on exception")));
}

TEST(FuncLog, TracerOpenedDuringUnwindingReportsItsOwnNormalExit) {
    LocalLogCapture log;
    ASSERT_TRUE(log.ready());
    EXPECT_THROW(unwindThroughCleanup(), std::runtime_error);
    EXPECT_THAT(log.entries(), ElementsAre(debugLine("void TracedCleanup::cleanUp()", "entry"),
                                           debugLine("void TracedCleanup::cleanUp()", "exit ")));
}

}  // namespace
