#include "bqlutil/PathUtils.h"

#include <gtest/gtest.h>

#include <string>

#include <pwd.h>
#include <unistd.h>

#include "bqltest/ScopedEnvironment.h"

namespace {

using Brimquell::PathUtils::getCommonAppDataDirectory;
using Brimquell::PathUtils::getUserAppDataDirectory;
using bqltest::ScopedEnvironment;

class UserAppDataDirectoryTest : public ::testing::Test {
 protected:
  ScopedEnvironment dataHome_{"XDG_DATA_HOME"};
  ScopedEnvironment home_{"HOME"};
};

TEST_F(UserAppDataDirectoryTest, XdgDataHomeIsUsedWhenSet) {
  dataHome_.set("/srv/data/share");
  home_.set("/home/someone");
  std::string path = "previous";

  EXPECT_EQ(getUserAppDataDirectory(path), 0);

  EXPECT_EQ(path, "/srv/data/share");
}

TEST_F(UserAppDataDirectoryTest, UnsetXdgDataHomeFallsBackToLocalShareUnderHome) {
  dataHome_.unset();
  home_.set("/home/someone");
  std::string path;

  EXPECT_EQ(getUserAppDataDirectory(path), 0);

  EXPECT_EQ(path, "/home/someone/.local/share");
}

TEST_F(UserAppDataDirectoryTest, EmptyXdgDataHomeFallsBackToLocalShareUnderHome) {
  dataHome_.set("");
  home_.set("/home/someone");
  std::string path;

  EXPECT_EQ(getUserAppDataDirectory(path), 0);

  EXPECT_EQ(path, "/home/someone/.local/share");
}

TEST_F(UserAppDataDirectoryTest, RelativeXdgDataHomeIsIgnored) {
  dataHome_.set("relative/share");
  home_.set("/home/someone");
  std::string path;

  EXPECT_EQ(getUserAppDataDirectory(path), 0);

  EXPECT_EQ(path, "/home/someone/.local/share");
}

TEST_F(UserAppDataDirectoryTest, MissingHomeFallsBackToTheAccountEntry) {
  dataHome_.unset();
  const passwd* entry = getpwuid(getuid());
  const bool hasAccountHome = entry != nullptr && entry->pw_dir != nullptr && *entry->pw_dir;
  const std::string accountHome = hasAccountHome ? entry->pw_dir : "";

  for (const bool emptyRatherThanUnset : {false, true}) {
    if (emptyRatherThanUnset) {
      home_.set("");
    } else {
      home_.unset();
    }
    std::string path = "untouched";

    const int status = getUserAppDataDirectory(path);

    if (hasAccountHome) {
      EXPECT_EQ(status, 0);
      EXPECT_EQ(path, accountHome + "/.local/share");
    } else {
      EXPECT_NE(status, 0);
      EXPECT_EQ(path, "untouched");
    }
  }
}

class CommonAppDataDirectoryTest : public ::testing::Test {
 protected:
  std::string commonDirectoryFor(const std::string& configDirs) {
    configDirs_.set(configDirs);
    std::string path = "previous";
    EXPECT_EQ(getCommonAppDataDirectory(path), 0);
    return path;
  }

  ScopedEnvironment configDirs_{"XDG_CONFIG_DIRS"};
};

TEST_F(CommonAppDataDirectoryTest, SingleXdgConfigDirIsUsed) {
  EXPECT_EQ(commonDirectoryFor("/opt/config"), "/opt/config");
}

TEST_F(CommonAppDataDirectoryTest, FirstOfSeveralXdgConfigDirsIsUsed) {
  EXPECT_EQ(commonDirectoryFor("/opt/first:/opt/second"), "/opt/first");
}

TEST_F(CommonAppDataDirectoryTest, EmptyAndRelativeEntriesAreSkipped) {
  EXPECT_EQ(commonDirectoryFor("::relative:/opt/third:/opt/fourth"), "/opt/third");
}

TEST_F(CommonAppDataDirectoryTest, EmptyXdgConfigDirsFallsBackToEtcXdg) {
  EXPECT_EQ(commonDirectoryFor(""), "/etc/xdg");
}

TEST_F(CommonAppDataDirectoryTest, XdgConfigDirsWithoutUsableEntryFallsBackToEtcXdg) {
  EXPECT_EQ(commonDirectoryFor(":relative:"), "/etc/xdg");
}

TEST_F(CommonAppDataDirectoryTest, UnsetXdgConfigDirsFallsBackToEtcXdg) {
  configDirs_.unset();
  std::string path = "previous";

  EXPECT_EQ(getCommonAppDataDirectory(path), 0);

  EXPECT_EQ(path, "/etc/xdg");
}

}  // namespace
