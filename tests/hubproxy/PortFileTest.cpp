#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "bqltest/TempDirectory.h"
#include "platform/PortFile.h"

namespace {

using bql::platform::IdentifyPortFile;
using bql::platform::ReclaimPortFile;
using bql::platform::RemovePortFile;

// A datagram socket bound to `path`; closing it leaves the file behind, as a dead owner does.
class BoundSocket {
public:
    explicit BoundSocket(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_DGRAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        bound_ = ::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }
    ~BoundSocket() { Close(); }
    BoundSocket(const BoundSocket&) = delete;
    BoundSocket& operator=(const BoundSocket&) = delete;

    bool bound() const { return bound_; }
    void Close() {
        if (socket_ >= 0) {
            ::close(socket_);
            socket_ = -1;
        }
    }

private:
    int socket_;
    bool bound_ = false;
};

bool Exists(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

class PortFileTest : public ::testing::Test {
protected:
    bqltest::TempDirectory directory;
    std::string port = directory / "com.bqlhub.colloq";
};

TEST_F(PortFileTest, MissingFileIsFree) {
    EXPECT_TRUE(ReclaimPortFile(port));
    EXPECT_FALSE(Exists(port));
}

TEST_F(PortFileTest, FileOfADeadOwnerIsRemoved) {
    BoundSocket dead(port);
    ASSERT_TRUE(dead.bound());
    dead.Close();

    EXPECT_TRUE(ReclaimPortFile(port));
    EXPECT_FALSE(Exists(port));
}

TEST_F(PortFileTest, FileOfALiveOwnerIsKept) {
    BoundSocket live(port);
    ASSERT_TRUE(live.bound());

    EXPECT_FALSE(ReclaimPortFile(port));
    EXPECT_TRUE(Exists(port));
}

TEST_F(PortFileTest, FileThatIsNoSocketIsKept) {
    std::ofstream(port) << "data";

    EXPECT_FALSE(ReclaimPortFile(port));
    EXPECT_TRUE(Exists(port));
}

TEST_F(PortFileTest, RemoveTakesTheIdentifiedFile) {
    std::ofstream(port) << "ours";
    const auto identity = IdentifyPortFile(port);
    ASSERT_TRUE(identity.has_value());

    RemovePortFile(port, *identity);

    EXPECT_FALSE(Exists(port));
}

TEST_F(PortFileTest, RemoveLeavesAFileThatReplacedOurs) {
    std::ofstream(port) << "ours";
    const auto ours = IdentifyPortFile(port);
    ASSERT_TRUE(ours.has_value());
    // A second name keeps our inode in use, so the replacement cannot get the same one.
    const std::string kept = directory / "kept";
    ASSERT_EQ(::link(port.c_str(), kept.c_str()), 0);
    ASSERT_EQ(::unlink(port.c_str()), 0);
    std::ofstream(port) << "theirs";

    RemovePortFile(port, *ours);

    EXPECT_TRUE(Exists(port));
}

TEST_F(PortFileTest, IdentifyingAMissingFileGivesNothing) {
    EXPECT_FALSE(IdentifyPortFile(port).has_value());
}

}  // namespace
