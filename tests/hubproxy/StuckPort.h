// A port whose owner never reads: its queue is filled once and stays full, so that every further
// block sent to it waits for room until the sender's time-out.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <string>

class StuckPort {
public:
    explicit StuckPort(const std::string& path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        owner = ::socket(AF_UNIX, SOCK_DGRAM, 0);
        if (owner < 0 || ::bind(owner, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            return;
        }
        filler = ::socket(AF_UNIX, SOCK_DGRAM, 0);
        if (filler < 0 || ::connect(filler, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            return;
        }
        unsigned char block[2196] = {};
        while (::send(filler, block, sizeof block, MSG_DONTWAIT) > 0) {
        }
        full = errno == EAGAIN;
    }
    ~StuckPort() {
        if (filler >= 0) {
            ::close(filler);
        }
        if (owner >= 0) {
            ::close(owner);
        }
    }
    StuckPort(const StuckPort&) = delete;
    StuckPort& operator=(const StuckPort&) = delete;

    // Whether the port is bound and its queue has no room left.
    bool isFull() const { return full; }

private:
    int owner = -1;
    int filler = -1;
    bool full = false;
};
