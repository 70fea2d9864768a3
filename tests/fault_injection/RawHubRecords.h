// Hub records built byte by byte and sent straight to the plug-in's port, bypassing the hub
// simulator: records with any code, blocks of any size, and senders of another user.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace e2e {

constexpr std::size_t kHubRecordBytes = 2196;

struct RawHubRecord {
    uint32_t messageType = 0;
    uint32_t callState = 0;
    uint32_t deviceAction = 0;
    int32_t callId = 0;
    std::string devicePath;   // ASCII; widened to 32-bit characters
    std::string phoneNumber;  // ASCII; widened to 32-bit characters
    std::string dtmfKeys;
};

// The 2196 bytes of the record, zero-filled where no field is given.
std::vector<unsigned char> encode(const RawHubRecord& record);

// Sends one datagram to the socket file; 0 on success, else the errno of the failure.
int sendBlock(const std::string& portFile, const std::vector<unsigned char>& block);
// The same from a child process that has become user `uid` (group `gid`) first. Returns the
// errno of the failed step (0 when the block went out); -1 when the child could not be run.
int sendBlockAsUser(uid_t uid, gid_t gid, const std::string& portFile, const std::vector<unsigned char>& block);

// A datagram socket bound to a socket file, standing in for a hub port to see what arrives.
class PortCatcher {
public:
    explicit PortCatcher(const std::string& portFile);
    ~PortCatcher();
    PortCatcher(const PortCatcher&) = delete;
    PortCatcher& operator=(const PortCatcher&) = delete;

    bool bound() const { return socket_ >= 0; }
    // The number of blocks that arrive within the time limit (waiting that long only when none
    // are pending).
    int blocksWithin(std::chrono::milliseconds limit);

private:
    int socket_ = -1;
    std::string path_;
};

}  // namespace e2e
