#include "bqlutil/LogWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// The check runs in a freshly started copy of the test program, where no other test can have
// set the log up before.
TEST(LogWriterBeforeInitDeathTest, LinesBeforeInitAreDroppedWithAFailure) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const bool allDropped = LogWriter_info("m", "f", "<>") != 0 &&
                                LogWriter_debug("m", "f", "<>") != 0 &&
                                LogWriter_error(nullptr, nullptr, nullptr) != 0;
        std::exit(allDropped ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
