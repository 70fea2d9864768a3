#include "bqlutil/LogWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "bqltest/FileLines.h"
#include "bqltest/TempDirectory.h"

namespace {

using bqltest::countLinesContaining;
using bqltest::readLines;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

namespace fs = std::filesystem;

// One writer thread: `count` numbered debug lines, counting the calls that report a failure.
void writeNumberedLines(int writer, int count, std::vector<int>& failures) {
  for (int i = 0; i < count; ++i) {
    const std::string message = "writer " + std::to_string(writer) + " line " + std::to_string(i);
    if (LogWriter_debug(message.c_str(), "void Writer::run()", "<>") != 0) {
      ++failures[static_cast<std::size_t>(writer)];
    }
  }
}

std::vector<std::string> expectedNumberedLines(int writers, int count) {
  std::vector<std::string> expected;
  for (int t = 0; t < writers; ++t) {
    for (int i = 0; i < count; ++i) {
      expected.push_back("writer " + std::to_string(t) + " line " + std::to_string(i));
    }
  }
  std::sort(expected.begin(), expected.end());
  return expected;
}

// The messages of the writers' lines, sorted; a line that lost its prefix is kept whole.
std::vector<std::string> writtenNumberedLines(const std::vector<std::string>& lines) {
  const std::string prefix = "void Writer::run() <> ";
  std::vector<std::string> written;
  for (const auto& line : lines) {
    const auto at = line.find(prefix);
    written.push_back(at == std::string::npos ? line : line.substr(at + prefix.size()));
  }
  std::sort(written.begin(), written.end());
  return written;
}

// log4cxx keeps its loggers for the whole process, so every test logs through a logger named
// after itself into a folder of its own.
class LogWriterTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(tempDir_.path().empty()); }

  const fs::path& dir() const { return tempDir_.path(); }

  static std::string loggerName() {
    return std::string("LogWriterTest.") +
           ::testing::UnitTest::GetInstance()->current_test_info()->name();
  }

  fs::path logFile(const fs::path& folder) const { return folder / (loggerName() + ".log"); }

  int initInto(const fs::path& folder) const {
    return LogWriter_init(nullptr, folder.c_str(), loggerName().c_str());
  }

  // A properties file that sends this test's logger, at `level` and up, to `target` only.
  fs::path writeConfiguration(const fs::path& target, const std::string& level) const {
    const fs::path file = dir() / "routing.properties";
    std::ofstream out(file);
    out << "log4j.logger." << loggerName() << "=" << level << ", routed\n"
        << "log4j.additivity." << loggerName() << "=false\n"
        << "log4j.appender.routed=org.apache.log4j.FileAppender\n"
        << "log4j.appender.routed.File=" << target.string() << "\n"
        << "log4j.appender.routed.layout=org.apache.log4j.PatternLayout\n"
        << "log4j.appender.routed.layout.ConversionPattern=ROUTED %p %X{function} %X{location} "
           "%m%n\n";
    return file;
  }

 private:
  bqltest::TempDirectory tempDir_;
};

TEST_F(LogWriterTest, LineReachesFileWithTimeLevelThreadFunctionAndLocation) {
  ASSERT_EQ(initInto(dir()), 0);

  EXPECT_EQ(LogWriter_debug("entry", "void Foo::bar()", "<>"), 0);

  EXPECT_THAT(readLines(logFile(dir())),
              ElementsAre(MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2},"
                                       "[0-9]{3} DEBUG \\[[^]]+\\] void Foo::bar\\(\\) <> entry")));
}

TEST_F(LogWriterTest, MissingLogFolderIsCreatedWithItsParents) {
  const fs::path nested = dir() / "a" / "b" / "logs";

  ASSERT_EQ(initInto(nested), 0);
  EXPECT_EQ(LogWriter_info("started", "int main()", "<>"), 0);

  EXPECT_TRUE(fs::is_directory(nested));
  EXPECT_EQ(countLinesContaining(readLines(logFile(nested)), "int main() <> started"), 1);
}

TEST_F(LogWriterTest, EachLevelIsNamedInItsLine) {
  ASSERT_EQ(initInto(dir()), 0);

  EXPECT_EQ(LogWriter_info("milestone", "f", "<>"), 0);
  EXPECT_EQ(LogWriter_debug("trace", "f", "<>"), 0);
  EXPECT_EQ(LogWriter_error("failure", "f", "<>"), 0);

  EXPECT_THAT(readLines(logFile(dir())),
              ElementsAre(HasSubstr(" INFO  ["), HasSubstr(" DEBUG ["), HasSubstr(" ERROR [")));
}

TEST_F(LogWriterTest, NullPartsOfALineAreWrittenAsEmpty) {
  ASSERT_EQ(initInto(dir()), 0);

  EXPECT_EQ(LogWriter_info(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(LogWriter_error("only a message", nullptr, nullptr), 0);

  const auto lines = readLines(logFile(dir()));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_THAT(lines[1], HasSubstr("only a message"));
}

TEST_F(LogWriterTest, ConfigurationFileRoutesLinesToItsOwnFile) {
  const fs::path routed = dir() / "elsewhere" / "routed.log";
  const fs::path config = writeConfiguration(routed, "DEBUG");
  const fs::path logDir = dir() / "unused";

  ASSERT_EQ(LogWriter_init(config.c_str(), logDir.c_str(), loggerName().c_str()), 0);
  EXPECT_EQ(LogWriter_debug("entry", "void Foo::bar()", "<>"), 0);

  EXPECT_THAT(readLines(routed), ElementsAre("ROUTED DEBUG void Foo::bar() <> entry"));
  EXPECT_FALSE(fs::exists(logDir));
}

TEST_F(LogWriterTest, ConfigurationFileLevelDecidesWhichLinesAreWritten) {
  const fs::path routed = dir() / "routed.log";
  const fs::path config = writeConfiguration(routed, "INFO");

  ASSERT_EQ(LogWriter_init(config.c_str(), dir().c_str(), loggerName().c_str()), 0);
  EXPECT_EQ(LogWriter_debug("trace", "f", "<>"), 0);
  EXPECT_EQ(LogWriter_info("milestone", "f", "<>"), 0);

  EXPECT_THAT(readLines(routed), ElementsAre("ROUTED INFO f <> milestone"));
}

TEST_F(LogWriterTest, ConfigurationFileThatDoesNotExistFallsBackToLogFolder) {
  const fs::path missing = dir() / "missing.properties";

  ASSERT_EQ(LogWriter_init(missing.c_str(), dir().c_str(), loggerName().c_str()), 0);
  EXPECT_EQ(LogWriter_info("fallback", "f", "<>"), 0);

  EXPECT_EQ(countLinesContaining(readLines(logFile(dir())), "f <> fallback"), 1);
}

TEST_F(LogWriterTest, ConfigurationPathNamingAFolderFallsBackToLogFolder) {
  const fs::path folder = dir() / "not-a-file";
  ASSERT_TRUE(fs::create_directory(folder));

  ASSERT_EQ(LogWriter_init(folder.c_str(), dir().c_str(), loggerName().c_str()), 0);
  EXPECT_EQ(LogWriter_info("fallback", "f", "<>"), 0);

  EXPECT_EQ(countLinesContaining(readLines(logFile(dir())), "f <> fallback"), 1);
}

TEST_F(LogWriterTest, ReinitMovesLinesToTheNewFolderOnly) {
  const fs::path first = dir() / "first";
  const fs::path second = dir() / "second";
  ASSERT_EQ(initInto(first), 0);
  EXPECT_EQ(LogWriter_info("one", "f", "<>"), 0);

  ASSERT_EQ(initInto(second), 0);
  EXPECT_EQ(LogWriter_info("two", "f", "<>"), 0);

  EXPECT_THAT(readLines(logFile(first)), ElementsAre(HasSubstr("f <> one")));
  EXPECT_THAT(readLines(logFile(second)), ElementsAre(HasSubstr("f <> two")));
}

TEST_F(LogWriterTest, ReinitIntoTheSameFolderWritesEachLineOnce) {
  ASSERT_EQ(initInto(dir()), 0);
  ASSERT_EQ(initInto(dir()), 0);
  ASSERT_EQ(initInto(dir()), 0);

  EXPECT_EQ(LogWriter_info("once", "f", "<>"), 0);

  EXPECT_EQ(countLinesContaining(readLines(logFile(dir())), "f <> once"), 1);
}

TEST_F(LogWriterTest, ReinitFromConfigurationFileToFolderStopsTheConfiguredRoute) {
  const fs::path routed = dir() / "routed.log";
  const fs::path config = writeConfiguration(routed, "DEBUG");
  ASSERT_EQ(LogWriter_init(config.c_str(), dir().c_str(), loggerName().c_str()), 0);
  EXPECT_EQ(LogWriter_info("configured", "f", "<>"), 0);

  ASSERT_EQ(initInto(dir()), 0);
  EXPECT_EQ(LogWriter_info("folder", "f", "<>"), 0);

  EXPECT_THAT(readLines(routed), ElementsAre("ROUTED INFO f <> configured"));
  EXPECT_THAT(readLines(logFile(dir())), ElementsAre(HasSubstr("f <> folder")));
}

TEST_F(LogWriterTest, ReinitFromFolderToConfigurationFileStopsTheFolderRoute) {
  ASSERT_EQ(initInto(dir()), 0);
  EXPECT_EQ(LogWriter_info("folder", "f", "<>"), 0);

  const fs::path routed = dir() / "routed.log";
  const fs::path config = writeConfiguration(routed, "DEBUG");
  ASSERT_EQ(LogWriter_init(config.c_str(), dir().c_str(), loggerName().c_str()), 0);
  EXPECT_EQ(LogWriter_info("configured", "f", "<>"), 0);

  EXPECT_THAT(readLines(logFile(dir())), ElementsAre(HasSubstr("f <> folder")));
  EXPECT_THAT(readLines(routed), ElementsAre("ROUTED INFO f <> configured"));
}

TEST_F(LogWriterTest, FolderThatCannotBeCreatedFailsAndKeepsThePreviousLog) {
  ASSERT_EQ(initInto(dir()), 0);
  const fs::path blocker = dir() / "plain-file";
  std::ofstream(blocker) << "not a folder\n";

  EXPECT_NE(initInto(blocker / "logs"), 0);
  EXPECT_EQ(LogWriter_info("still here", "f", "<>"), 0);

  EXPECT_EQ(countLinesContaining(readLines(logFile(dir())), "f <> still here"), 1);
}

TEST_F(LogWriterTest, MissingFolderWithoutConfigurationFileFails) {
  EXPECT_NE(LogWriter_init(nullptr, nullptr, loggerName().c_str()), 0);
  EXPECT_NE(LogWriter_init("", "", loggerName().c_str()), 0);
  EXPECT_NE(LogWriter_init(nullptr, nullptr, nullptr), 0);
}

TEST_F(LogWriterTest, MissingLoggerNameWritesTheDefaultLogFile) {
  const fs::path nullName = dir() / "null-name";
  const fs::path emptyName = dir() / "empty-name";

  ASSERT_EQ(LogWriter_init(nullptr, nullName.c_str(), nullptr), 0);
  EXPECT_EQ(LogWriter_info("unnamed", "f", "<>"), 0);
  ASSERT_EQ(LogWriter_init("", emptyName.c_str(), ""), 0);
  EXPECT_EQ(LogWriter_info("unnamed", "f", "<>"), 0);

  EXPECT_THAT(readLines(nullName / "bqlutil.log"), ElementsAre(HasSubstr("f <> unnamed")));
  EXPECT_THAT(readLines(emptyName / "bqlutil.log"), ElementsAre(HasSubstr("f <> unnamed")));
}

TEST_F(LogWriterTest, FolderWithNonAsciiNameIsUsedAsGiven) {
  const fs::path folder = dir() / "journal-\xC3\xA9t\xC3\xA9";

  ASSERT_EQ(initInto(folder), 0);
  EXPECT_EQ(LogWriter_info("accents", "f", "<>"), 0);

  EXPECT_THAT(readLines(logFile(folder)), ElementsAre(HasSubstr("f <> accents")));
}

TEST_F(LogWriterTest, NonAsciiTextIsWrittenAsGiven) {
  const std::string message = "Anruf von J\xC3\xBCrgen \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80";
  ASSERT_EQ(initInto(dir()), 0);

  EXPECT_EQ(LogWriter_info(message.c_str(), "void Caf\xC3\xA9::run()", "<>"), 0);

  EXPECT_THAT(readLines(logFile(dir())),
              ElementsAre(HasSubstr("void Caf\xC3\xA9::run() <> " + message)));
}

TEST_F(LogWriterTest, LinesFromConcurrentThreadsAreAllWrittenWhole) {
  constexpr int kWriters = 8;
  constexpr int kLinesPerWriter = 250;
  ASSERT_EQ(initInto(dir()), 0);

  std::vector<int> failures(kWriters, 0);
  std::vector<std::thread> writers;
  for (int t = 0; t < kWriters; ++t) {
    writers.emplace_back(writeNumberedLines, t, kLinesPerWriter, std::ref(failures));
  }
  for (auto& writer : writers) {
    writer.join();
  }

  EXPECT_THAT(failures, ::testing::Each(0));
  EXPECT_EQ(writtenNumberedLines(readLines(logFile(dir()))),
            expectedNumberedLines(kWriters, kLinesPerWriter));
}

TEST_F(LogWriterTest, LinesWrittenWhileReinitializingAreNeitherLostNorDuplicated) {
  constexpr int kWriters = 4;
  constexpr int kLinesPerWriter = 200;
  constexpr int kReinits = 40;
  const fs::path folders[] = {dir() / "even", dir() / "odd"};
  ASSERT_EQ(initInto(folders[0]), 0);

  std::vector<int> failures(kWriters, 0);
  std::vector<std::thread> writers;
  for (int t = 0; t < kWriters; ++t) {
    writers.emplace_back(writeNumberedLines, t, kLinesPerWriter, std::ref(failures));
  }
  int failedReinits = 0;
  for (int r = 1; r <= kReinits; ++r) {
    failedReinits += initInto(folders[r % 2]) != 0 ? 1 : 0;
  }
  for (auto& writer : writers) {
    writer.join();
  }

  EXPECT_EQ(failedReinits, 0);
  EXPECT_THAT(failures, ::testing::Each(0));
  auto lines = readLines(logFile(folders[0]));
  const auto odd = readLines(logFile(folders[1]));
  lines.insert(lines.end(), odd.begin(), odd.end());
  EXPECT_EQ(writtenNumberedLines(lines), expectedNumberedLines(kWriters, kLinesPerWriter));
}

}  // namespace
