#include "hubproxy/LinuxCommonPipe.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include <exception>
#include <optional>
#include <system_error>

#include "platform/AsioLocalSockets.h"

#include "bqlutil/LogWriter.h"
#include "platform/ThreadName.h"
#include "hubproxy/LocalPort.h"
#include "platform/PortDirectory.h"

namespace {

constexpr const char* kReceiverThreadName = "bql-pipe-rx";

}  // namespace

LinuxCommonPipe::LinuxCommonPipe(std::string local, std::string remote, std::function<void()> connected,
                                 std::function<int(unsigned char*, int)> received, int seconds)
    : localName(std::move(local)),
      remoteName(std::move(remote)),
      timeout(seconds),
      onConnected(std::move(connected)),
      onReceive(std::move(received)) {}

LinuxCommonPipe::~LinuxCommonPipe() {
    LinuxCommonPipe::StopPipe();
    bql::MutexLock guard(sendLock);
    CloseSendSocket();
}

void LinuxCommonPipe::StartPipe() {
    StopPipe();
    std::promise<void> started;
    std::future<void> ready = started.get_future();
    {
        bql::MutexLock guard(lock);
        // A start from another thread may have come in since.
        StopReceiver();
        try {
            runLoop = std::make_unique<boost::asio::io_context>(1);
        } catch (const std::exception& failure) {
            LogWriter_error(failure.what(), __PRETTY_FUNCTION__, "<>");
            return;
        }
        try {
            runThread = std::thread(&LinuxCommonPipe::StartInThread, this, std::ref(*runLoop), std::move(started));
        } catch (const std::system_error& failure) {
            runLoop.reset();
            throw std::system_error(failure.code(), "thread constructor failed");
        }
    }
    ready.wait();
}

void LinuxCommonPipe::StartInThread(boost::asio::io_context& loop, std::promise<void> started) {
    platform::nameCurrentThread(kReceiverThreadName);
    std::unique_ptr<LocalPort> port;
    try {
        port = LocalPort::Open(loop, localName, [this](unsigned char* data, int length) { onReceive(data, length); });
    } catch (const std::exception& failure) {
        LogWriter_error(failure.what(), __PRETTY_FUNCTION__, "<>");
        port.reset();
    }
    if (!port) {
        // The thread ends here and stays joinable until StopPipe joins it.
        started.set_value();
        return;
    }
    // Keeps run() going while no block is awaited, so that only StopPipe ends it.
    auto keepRunning = boost::asio::make_work_guard(loop);
    listening = true;
    started.set_value();
    loop.run();
    // The port closes (and removes its file) before its loop goes.
    port.reset();
}

void LinuxCommonPipe::StopPipe() {
    bql::MutexLock guard(lock);
    StopReceiver();
}

void LinuxCommonPipe::StopReceiver() {
    if (runLoop != nullptr) {
        runLoop->stop();
    }
    if (runThread.joinable()) {
        runThread.join();
    }
    runLoop.reset();
    listening = false;
}

void LinuxCommonPipe::Send(unsigned char* data, int length) {
    if (length < 0 || (data == nullptr && length > 0)) {
        return;
    }
    bql::MutexLock guard(sendLock);
    if (sendSocket >= 0 && SendOnSocket(data, length)) {
        return;
    }
    // No socket yet, or its port's owner went away (a hub that restarted owns a new socket under
    // the same name): connect afresh, once.
    CloseSendSocket();
    if (ConnectSendSocket() && !SendOnSocket(data, length)) {
        CloseSendSocket();
    }
}

bool LinuxCommonPipe::ConnectSendSocket() {
    const std::optional<std::string> directory = bql::platform::OpenPortDirectory();
    if (!directory) {
        return false;
    }
    const std::optional<std::string> path = bql::platform::PortFilePath(*directory, remoteName);
    if (!path) {
        return false;
    }
    const int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        return false;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path->c_str(), path->size() + 1);
    // Connecting finds out at once whether anybody has the remote port.
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return false;
    }
    if (timeout > 0) {
        const timeval limit{timeout, 0};
        ::setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    }
    sendSocket = fd;
    return true;
}

bool LinuxCommonPipe::SendOnSocket(const unsigned char* data, int length) {
    const int flags = timeout > 0 ? MSG_NOSIGNAL : MSG_NOSIGNAL | MSG_DONTWAIT;
    // A blocking send honours SO_SNDTIMEO. Other failures (a full receiver after the time-out) drop
    // the block: the pipe's sends are fire-and-forget.
    if (::send(sendSocket, data, static_cast<std::size_t>(length), flags) >= 0) {
        return true;
    }
    return errno != ECONNREFUSED && errno != ENOTCONN && errno != EPIPE && errno != ECONNRESET;
}

void LinuxCommonPipe::CloseSendSocket() {
    if (sendSocket >= 0) {
        ::close(sendSocket);
        sendSocket = -1;
    }
}

void LinuxCommonPipe::Receive() {}

bool LinuxCommonPipe::IsListening() { return listening; }

void LinuxCommonPipe::SetFlags(bool, bool) {}
