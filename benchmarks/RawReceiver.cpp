#include "RawReceiver.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <future>
#include <system_error>

#include "HubProtocol.h"
#include "platform/ThreadName.h"

namespace bench {

RawReceiver::RawReceiver(int socket, HandoffChain& chain) : socket_(socket), chain_(chain) {}

RawReceiver::~RawReceiver() { stop(); }

bool RawReceiver::start() {
    if (::pipe(wake_) != 0) {
        return false;
    }
    std::promise<void> started;
    std::future<void> running = started.get_future();
    try {
        thread_ = std::thread([this, started = std::move(started)]() mutable {
            platform::nameCurrentThread("bench-raw-recv");
            started.set_value();
            run();
        });
    } catch (const std::system_error&) {
        return false;
    }
    running.wait();
    return true;
}

void RawReceiver::run() {
    unsigned char block[kRecordBytes];
    for (;;) {
        pollfd ready[2] = {{socket_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
        if (::poll(ready, 2, -1) < 0) {
            continue;
        }
        if (ready[1].revents != 0) {
            return;
        }
        if (::recv(socket_, block, sizeof block, 0) != static_cast<ssize_t>(sizeof block)) {
            continue;
        }
        HubMessage message;
        std::memcpy(&message, block, sizeof message);
        chain_.post(message.stampNs);
    }
}

void RawReceiver::stop() {
    if (thread_.joinable()) {
        const char wake = 1;
        if (::write(wake_[1], &wake, 1) == 1) {
            thread_.join();
        }
    }
    for (int& fd : wake_) {
        if (fd >= 0) {
            ::close(fd);
            fd = -1;
        }
    }
}

}  // namespace bench
