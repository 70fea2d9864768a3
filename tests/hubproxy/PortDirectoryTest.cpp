#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include <gtest/gtest.h>

#include "LocalLogFile.h"
#include "ScopedEnvironment.h"
#include "TempDirectory.h"
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
    TempDirectory scratch;
    TempDirectory logs;
    LocalLogFile log{logs.path()};
};

TEST_F(PortDirectoryTest, ChosenDirectoryComesFirst) {
    ScopedEnvironment chosen("BQL_PORT_DIR", "/somewhere/ports");
    ScopedEnvironment runtime("XDG_RUNTIME_DIR", "/run/user/1000");

    EXPECT_EQ(PortDirectoryPath(), "/somewhere/ports");
}

TEST_F(PortDirectoryTest, RuntimeDirectoryComesNext) {
    ScopedEnvironment chosen("BQL_PORT_DIR", std::nullopt);
    ScopedEnvironment runtime("XDG_RUNTIME_DIR", "/run/user/1000");

    EXPECT_EQ(PortDirectoryPath(), "/run/user/1000/bqlhub");
}

TEST_F(PortDirectoryTest, TmpWithTheUserIdComesLast) {
    ScopedEnvironment chosen("BQL_PORT_DIR", std::nullopt);
    ScopedEnvironment runtime("XDG_RUNTIME_DIR", std::nullopt);

    EXPECT_EQ(PortDirectoryPath(), "/tmp/bqlhub-" + std::to_string(::geteuid()));
}

TEST_F(PortDirectoryTest, EmptyVariablesCountAsUnset) {
    ScopedEnvironment chosen("BQL_PORT_DIR", "");
    ScopedEnvironment runtime("XDG_RUNTIME_DIR", "");

    EXPECT_EQ(PortDirectoryPath(), "/tmp/bqlhub-" + std::to_string(::geteuid()));
}

TEST_F(PortDirectoryTest, MissingDirectoryIsCreatedWithMode0700) {
    ScopedEnvironment chosen("BQL_PORT_DIR", std::nullopt);
    ScopedEnvironment runtime("XDG_RUNTIME_DIR", scratch.path());
    const mode_t previous = ::umask(022);

    const std::optional<std::string> opened = OpenPortDirectory();

    ::umask(previous);
    ASSERT_TRUE(opened.has_value());
    EXPECT_EQ(*opened, scratch / "bqlhub");
    EXPECT_EQ(ModeOf(*opened), 0700u);
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(PortDirectoryTest, ExistingPrivateDirectoryIsAccepted) {
    ScopedEnvironment chosen("BQL_PORT_DIR", scratch.path());

    EXPECT_EQ(OpenPortDirectory(), scratch.path());
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(PortDirectoryTest, DirectoryOpenToGroupIsRefusedWithOneErrorLine) {
    ScopedEnvironment chosen("BQL_PORT_DIR", scratch.path());
    ASSERT_EQ(::chmod(scratch.path().c_str(), 0710), 0);

    EXPECT_FALSE(OpenPortDirectory().has_value());

    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_NE(log.Lines()[0].find("ERROR"), std::string::npos);
    EXPECT_NE(log.Lines()[0].find("port directory " + scratch.path() + " refused: open to group or others (mode 0710)"),
              std::string::npos);
}

TEST_F(PortDirectoryTest, DirectoryOpenToOthersIsRefused) {
    ScopedEnvironment chosen("BQL_PORT_DIR", scratch.path());
    ASSERT_EQ(::chmod(scratch.path().c_str(), 0701), 0);

    EXPECT_FALSE(OpenPortDirectory().has_value());
    EXPECT_EQ(log.Count("refused: open to group or others (mode 0701)"), 1);
}

TEST_F(PortDirectoryTest, DirectoryOfAnotherUserIsRefused) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can give a folder away";
    }
    ScopedEnvironment chosen("BQL_PORT_DIR", scratch.path());
    ASSERT_EQ(::chown(scratch.path().c_str(), 4242, 4242), 0);

    EXPECT_FALSE(OpenPortDirectory().has_value());
    EXPECT_EQ(log.Count("refused: owned by user 4242"), 1);
}

TEST_F(PortDirectoryTest, SymbolicLinkIsRefused) {
    TempDirectory target;
    const std::string link = scratch / "link";
    ASSERT_EQ(::symlink(target.path().c_str(), link.c_str()), 0);
    ScopedEnvironment chosen("BQL_PORT_DIR", link);

    EXPECT_FALSE(OpenPortDirectory().has_value());
    EXPECT_EQ(log.Count("refused: not a directory"), 1);
}

TEST_F(PortDirectoryTest, DirectoryThatCannotBeMadeIsReportedOnce) {
    ScopedEnvironment chosen("BQL_PORT_DIR", scratch / "missing/parent");

    EXPECT_FALSE(OpenPortDirectory().has_value());
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_NE(log.Lines()[0].find("cannot create the port directory"), std::string::npos);
}

TEST_F(PortDirectoryTest, PortFilePathJoinsDirectoryAndName) {
    EXPECT_EQ(PortFilePath("/run/user/1000/bqlhub", "com.bqlhub.hub"), "/run/user/1000/bqlhub/com.bqlhub.hub");
}

TEST_F(PortDirectoryTest, PortFilePathTooLongForASocketAddressIsRefused) {
    const std::string directory(100, 'd');

    EXPECT_FALSE(PortFilePath("/" + directory, "com.bqlhub.colloq").has_value());
    EXPECT_EQ(log.Count("port path too long for a socket address"), 1);
}

}  // namespace
