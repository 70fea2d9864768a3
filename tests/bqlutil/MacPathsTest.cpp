// The macOS application-data folders. Built against the macOS source on every system, so that
// the Apple side is checked where the tests run.
#include "bqlutil/PathUtils.h"

#include <gtest/gtest.h>

#include <string>

#include <pwd.h>
#include <unistd.h>

#include "bqltest/ScopedEnvironment.h"

namespace {

using Brimquell::PathUtils::getCommonAppDataDirectory;
using Brimquell::PathUtils::getUserAppDataDirectory;

TEST(MacAppDataDirectory, UserFolderIsApplicationSupportInTheHomeFolder) {
  bqltest::ScopedEnvironment home("HOME");
  home.set("/Users/someone");
  std::string path;

  EXPECT_EQ(getUserAppDataDirectory(path), 0);
  EXPECT_EQ(path, "/Users/someone/Library/Application Support");
}

TEST(MacAppDataDirectory, UserFolderWithoutHomeComesFromTheAccountEntry) {
  bqltest::ScopedEnvironment home("HOME");
  home.unset();
  const passwd* entry = getpwuid(getuid());
  std::string path = "untouched";

  const int status = getUserAppDataDirectory(path);

  if (entry != nullptr && entry->pw_dir != nullptr && *entry->pw_dir) {
    EXPECT_EQ(status, 0);
    EXPECT_EQ(path, std::string(entry->pw_dir) + "/Library/Application Support");
  } else {
    EXPECT_NE(status, 0);
    EXPECT_EQ(path, "untouched");
  }
}

TEST(MacAppDataDirectory, CommonFolderIsTheMachinesApplicationSupport) {
  std::string path = "previous";

  EXPECT_EQ(getCommonAppDataDirectory(path), 0);
  EXPECT_EQ(path, "/Library/Application Support");
}

}  // namespace
