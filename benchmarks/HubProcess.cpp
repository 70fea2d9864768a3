#include "HubProcess.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Clock.h"

namespace bench {

namespace {

bool makePair(int fds[2]) { return ::socketpair(AF_UNIX, SOCK_DGRAM, 0, fds) == 0; }

void closeIfOpen(int& fd) {
    if (fd >= 0) {
        ::close(fd);
        fd = -1;
    }
}

}  // namespace

HubProcess::~HubProcess() { stop(); }

bool HubProcess::start(const std::string& executable, const std::string& devicePath) {
    int control[2] = {-1, -1};
    int raw[2] = {-1, -1};
    if (!makePair(control) || !makePair(raw)) {
        error_ = std::string("socketpair: ") + std::strerror(errno);
        return false;
    }
    const std::string controlArg = std::to_string(control[1]);
    const std::string rawArg = std::to_string(raw[1]);
    pid_ = ::fork();
    if (pid_ < 0) {
        error_ = std::string("fork: ") + std::strerror(errno);
        return false;
    }
    if (pid_ == 0) {
        ::close(control[0]);
        ::close(raw[0]);
        ::execl(executable.c_str(), executable.c_str(), controlArg.c_str(), rawArg.c_str(), devicePath.c_str(),
                static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(control[1]);
    ::close(raw[1]);
    control_ = control[0];
    raw_ = raw[0];
    const auto ready = expect(HubMessageKind::Ready, std::chrono::seconds(10));
    if (!ready) {
        error_ = "the hub process did not get the hub's port (another hub owns it, or it did not start)";
        stop();
        return false;
    }
    return true;
}

void HubProcess::stop() {
    if (pid_ > 0) {
        send(HubMessage{HubMessageKind::Quit, 0, 0, 0, 0});
        int status = 0;
        const int64_t deadline = nowNs() + 5'000'000'000LL;
        while (::waitpid(pid_, &status, WNOHANG) == 0) {
            if (nowNs() > deadline) {
                ::kill(pid_, SIGKILL);
                ::waitpid(pid_, &status, 0);
                break;
            }
            ::usleep(10000);
        }
        pid_ = -1;
    }
    closeIfOpen(control_);
    closeIfOpen(raw_);
}

bool HubProcess::send(const HubMessage& message) {
    return control_ >= 0 && ::send(control_, &message, sizeof message, MSG_NOSIGNAL) == sizeof message;
}

bool HubProcess::sendRecordSized(const HubMessage& message) {
    unsigned char block[kRecordBytes] = {};
    std::memcpy(block, &message, sizeof message);
    return control_ >= 0 && ::send(control_, block, sizeof block, MSG_NOSIGNAL) == sizeof block;
}

std::optional<HubMessage> HubProcess::expect(HubMessageKind kind, std::chrono::milliseconds timeout,
                                             std::optional<int32_t> callId, std::optional<int32_t> callState) {
    const int64_t deadline = nowNs() + static_cast<int64_t>(timeout.count()) * 1'000'000;
    for (;;) {
        const int64_t left = (deadline - nowNs()) / 1'000'000;
        if (left < 0 || control_ < 0) {
            return std::nullopt;
        }
        pollfd ready{control_, POLLIN, 0};
        if (::poll(&ready, 1, static_cast<int>(left) + 1) <= 0) {
            continue;
        }
        HubMessage message;
        if (::recv(control_, &message, sizeof message, 0) != sizeof message) {
            return std::nullopt;
        }
        if (message.kind == kind && (!callId || message.callId == *callId) &&
            (!callState || message.callState == *callState)) {
            return message;
        }
    }
}

}  // namespace bench
