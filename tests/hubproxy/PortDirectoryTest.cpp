#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "ForeignDirectory.h"
#include "bqltest/LocalLog.h"
#include "bqltest/ScopedEnvironment.h"
#include "bqltest/TempDirectory.h"
#include "platform/PortDirectory.h"

namespace {

using bql::platform::OpenPortDirectory;
using bql::platform::PortDirectoryPath;
using bql::platform::PortFilePath;

mode_t ModeOf(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

class PortDirectoryTest : public ::testing::Test {
protected:
    bqltest::TempDirectory scratch;
    bqltest::LocalLogCapture log;
};

TEST_F(PortDirectoryTest, ChosenDirectoryComesFirst) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", "/somewhere/ports");
    bqltest::ScopedEnvironment runtime("XDG_RUNTIME_DIR", "/run/user/1000");

    EXPECT_EQ(PortDirectoryPath(), "/somewhere/ports");
}

TEST_F(PortDirectoryTest, RuntimeDirectoryComesNext) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", std::nullopt);
    bqltest::ScopedEnvironment runtime("XDG_RUNTIME_DIR", "/run/user/1000");

    EXPECT_EQ(PortDirectoryPath(), "/run/user/1000/bqlhub");
}

TEST_F(PortDirectoryTest, TmpWithTheUserIdComesLast) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", std::nullopt);
    bqltest::ScopedEnvironment runtime("XDG_RUNTIME_DIR", std::nullopt);

    EXPECT_EQ(PortDirectoryPath(), "/tmp/bqlhub-" + std::to_string(::geteuid()));
}

TEST_F(PortDirectoryTest, EmptyVariablesCountAsUnset) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", "");
    bqltest::ScopedEnvironment runtime("XDG_RUNTIME_DIR", "");

    EXPECT_EQ(PortDirectoryPath(), "/tmp/bqlhub-" + std::to_string(::geteuid()));
}

TEST_F(PortDirectoryTest, MissingDirectoryIsCreatedWithMode0700) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", std::nullopt);
    bqltest::ScopedEnvironment runtime("XDG_RUNTIME_DIR", scratch.path());
    const mode_t previous = ::umask(022);

    const std::optional<std::string> opened = OpenPortDirectory();

    ::umask(previous);
    ASSERT_TRUE(opened.has_value());
    EXPECT_EQ(*opened, (scratch / "bqlhub").string());
    EXPECT_EQ(ModeOf(*opened), 0700u);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(PortDirectoryTest, ExistingPrivateDirectoryIsAccepted) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", scratch.path());

    EXPECT_EQ(OpenPortDirectory(), scratch.path().string());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(PortDirectoryTest, DirectoryOpenToGroupIsRefusedWithOneErrorLine) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", scratch.path());
    ASSERT_EQ(::chmod(scratch.path().c_str(), 0710), 0);

    EXPECT_FALSE(OpenPortDirectory().has_value());

    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_NE(log.lines()[0].find("ERROR"), std::string::npos);
    EXPECT_NE(log.lines()[0].find("port directory " + scratch.path().string() +
                                  " refused: open to group or others (mode 0710)"),
              std::string::npos);
}

TEST_F(PortDirectoryTest, DirectoryOpenToOthersIsRefused) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", scratch.path());
    ASSERT_EQ(::chmod(scratch.path().c_str(), 0701), 0);

    EXPECT_FALSE(OpenPortDirectory().has_value());
    EXPECT_EQ(log.count("refused: open to group or others (mode 0701)"), 1);
}

TEST_F(PortDirectoryTest, DirectoryOfAnotherUserIsRefused) {
    const std::optional<ForeignDirectory> foreign = DirectoryOfAnotherUser(scratch.path());
    ASSERT_TRUE(foreign.has_value());
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", foreign->path);

    EXPECT_FALSE(OpenPortDirectory().has_value());
    EXPECT_EQ(log.count("refused: owned by user " + std::to_string(foreign->owner)), 1);
}

TEST_F(PortDirectoryTest, SymbolicLinkIsRefused) {
    bqltest::TempDirectory target;
    const std::string link = scratch / "link";
    ASSERT_EQ(::symlink(target.path().c_str(), link.c_str()), 0);
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", link);

    EXPECT_FALSE(OpenPortDirectory().has_value());
    EXPECT_EQ(log.count("refused: not a directory"), 1);
}

TEST_F(PortDirectoryTest, DirectoryThatCannotBeMadeIsReportedOnce) {
    bqltest::ScopedEnvironment chosen("BQL_PORT_DIR", scratch / "missing/parent");

    EXPECT_FALSE(OpenPortDirectory().has_value());
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_NE(log.lines()[0].find("cannot create the port directory"), std::string::npos);
}

TEST_F(PortDirectoryTest, PortFilePathJoinsDirectoryAndName) {
    EXPECT_EQ(PortFilePath("/run/user/1000/bqlhub", "com.bqlhub.hub"), "/run/user/1000/bqlhub/com.bqlhub.hub");
}

TEST_F(PortDirectoryTest, PortFilePathTooLongForASocketAddressIsRefused) {
    const std::string directory(100, 'd');

    EXPECT_FALSE(PortFilePath("/" + directory, "com.bqlhub.colloq").has_value());
    EXPECT_EQ(log.count("port path too long for a socket address"), 1);
}

}  // namespace
