#include "RawHubRecords.h"

#include <grp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace e2e {

namespace {

constexpr std::size_t kDevicePathOffset = 16;
constexpr std::size_t kDevicePathChars = 128;
constexpr std::size_t kPhoneNumberOffset = 1552;
constexpr std::size_t kPhoneNumberChars = 128;
constexpr std::size_t kDtmfKeysOffset = 2128;
constexpr std::size_t kDtmfKeysBytes = 64;

void putWord(std::vector<unsigned char>& block, std::size_t offset, uint32_t value) {
    std::memcpy(block.data() + offset, &value, sizeof value);
}

void putWide(std::vector<unsigned char>& block, std::size_t offset, std::size_t capacity, const std::string& text) {
    for (std::size_t i = 0; i < text.size() && i + 1 < capacity; ++i) {
        putWord(block, offset + 4 * i, static_cast<unsigned char>(text[i]));
    }
}

bool addressOf(const std::string& path, sockaddr_un* address) {
    std::memset(address, 0, sizeof *address);
    address->sun_family = AF_UNIX;
    if (path.size() >= sizeof address->sun_path) {
        return false;
    }
    std::memcpy(address->sun_path, path.c_str(), path.size() + 1);
    return true;
}

}  // namespace

std::vector<unsigned char> encode(const RawHubRecord& record) {
    std::vector<unsigned char> block(kHubRecordBytes, 0);
    putWord(block, 0, record.messageType);
    putWord(block, 4, record.callState);
    putWord(block, 8, record.deviceAction);
    putWord(block, 12, static_cast<uint32_t>(record.callId));
    putWide(block, kDevicePathOffset, kDevicePathChars, record.devicePath);
    putWide(block, kPhoneNumberOffset, kPhoneNumberChars, record.phoneNumber);
    std::memcpy(block.data() + kDtmfKeysOffset, record.dtmfKeys.data(),
                std::min(record.dtmfKeys.size(), kDtmfKeysBytes - 1));
    return block;
}

int sendBlock(const std::string& portFile, const std::vector<unsigned char>& block) {
    sockaddr_un address{};
    if (!addressOf(portFile, &address)) {
        return ENAMETOOLONG;
    }
    const int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        return errno;
    }
    const ssize_t sent = ::sendto(fd, block.data(), block.size(), MSG_NOSIGNAL,
                                  reinterpret_cast<const sockaddr*>(&address), sizeof address);
    const int error = sent < 0 ? errno : 0;
    ::close(fd);
    return error;
}

int sendBlockAsUser(uid_t uid, gid_t gid, const std::string& portFile, const std::vector<unsigned char>& block) {
    sockaddr_un address{};
    if (!addressOf(portFile, &address)) {
        return ENAMETOOLONG;
    }
    // The child only makes system calls: the test process has other threads.
    const pid_t child = ::fork();
    if (child < 0) {
        return -1;
    }
    if (child == 0) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(gid) != 0 || ::setuid(uid) != 0) {
            ::_exit(errno == 0 ? 255 : errno);
        }
        const int fd = ::socket(AF_UNIX, SOCK_DGRAM, 0);
        if (fd < 0) {
            ::_exit(errno);
        }
        const ssize_t sent = ::sendto(fd, block.data(), block.size(), MSG_NOSIGNAL,
                                      reinterpret_cast<const sockaddr*>(&address), sizeof address);
        ::_exit(sent < 0 ? errno : 0);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

PortCatcher::PortCatcher(const std::string& portFile) : path_(portFile) {
    sockaddr_un address{};
    if (!addressOf(portFile, &address)) {
        return;
    }
    const int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        return;
    }
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return;
    }
    socket_ = fd;
}

PortCatcher::~PortCatcher() {
    if (socket_ >= 0) {
        ::close(socket_);
        ::unlink(path_.c_str());
    }
}

int PortCatcher::blocksWithin(std::chrono::milliseconds limit) {
    int blocks = 0;
    pollfd waiting{socket_, POLLIN, 0};
    while (socket_ >= 0 && ::poll(&waiting, 1, blocks == 0 ? static_cast<int>(limit.count()) : 0) > 0) {
        unsigned char byte = 0;
        if (::recv(socket_, &byte, sizeof byte, MSG_TRUNC) < 0) {
            break;
        }
        ++blocks;
    }
    return blocks;
}

}  // namespace e2e
