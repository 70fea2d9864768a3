#include "HomeDirectory.h"

#include <gtest/gtest.h>

#include <string>

#include <pwd.h>

namespace {

// Far above any account a system hands out; checked below to really have no entry.
constexpr uid_t kUidWithoutAccount = 0x7FFFFFF0;

TEST(HomeDirectoryTest, UserWithoutAccountEntryLeavesHomeAlone) {
  ASSERT_EQ(getpwuid(kUidWithoutAccount), nullptr);
  std::string home = "untouched";

  EXPECT_FALSE(bqlutil::accountHomeDirectory(kUidWithoutAccount, home));

  EXPECT_EQ(home, "untouched");
}

TEST(HomeDirectoryTest, AccountEntryGivesItsHomeFolder) {
  const passwd* entry = getpwuid(0);
  ASSERT_NE(entry, nullptr);
  const std::string expected = entry->pw_dir;
  std::string home;

  EXPECT_TRUE(bqlutil::accountHomeDirectory(0, home));

  EXPECT_EQ(home, expected);
}

}  // namespace
