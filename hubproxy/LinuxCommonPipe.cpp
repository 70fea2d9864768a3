#include "hubproxy/LinuxCommonPipe.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <exception>
#include <optional>
#include <system_error>

#include "platform/AsioLocalSockets.h"

#include "bqlutil/LogWriter.h"
#include "platform/ThreadName.h"
#include "hubproxy/LocalPort.h"
#include "platform/PortDirectory.h"

namespace {

using boost::asio::local::datagram_protocol;

constexpr const char* kReceiverThreadName = "bql-pipe-rx";

}  // namespace

LinuxCommonPipe::LinuxCommonPipe(std::string local, std::string remote, std::function<void()> connected,
                                 std::function<int(unsigned char*, int)> received, int seconds)
    : localName(std::move(local)),
      remoteName(std::move(remote)),
      timeout(seconds),
      onConnected(std::move(connected)),
      onReceive(std::move(received)),
      sendContext(std::make_unique<boost::asio::io_context>()) {}

LinuxCommonPipe::~LinuxCommonPipe() { LinuxCommonPipe::StopPipe(); }

void LinuxCommonPipe::StartPipe() {
    StopPipe();
    std::promise<void> started;
    std::future<void> listening = started.get_future();
    {
        bql::MutexLock guard(lock);
        try {
            runThread = std::thread(&LinuxCommonPipe::StartInThread, this, std::move(started));
        } catch (const std::system_error& failure) {
            throw std::system_error(failure.code(), "thread constructor failed");
        }
    }
    // The receiver takes the lock to publish its loop, so the wait happens without it.
    listening.wait();
}

void LinuxCommonPipe::StartInThread(std::promise<void> started) {
    platform::nameCurrentThread(kReceiverThreadName);
    std::unique_ptr<boost::asio::io_context> loop;
    std::unique_ptr<LocalPort> port;
    try {
        loop = std::make_unique<boost::asio::io_context>(1);
        port = LocalPort::Open(*loop, localName,
                               [this](unsigned char* data, int length) { onReceive(data, length); });
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
    auto keepRunning = boost::asio::make_work_guard(*loop);
    {
        bql::MutexLock guard(lock);
        runLoop = loop.get();
    }
    started.set_value();
    loop->run();
    // The port closes (and removes its file) before its loop goes.
    port.reset();
}

void LinuxCommonPipe::StopPipe() {
    bql::MutexLock guard(lock);
    if (runLoop != nullptr) {
        runLoop->stop();
        runLoop = nullptr;
    }
    // The receiver takes the lock only before it runs its loop, so joining under it is safe.
    if (runThread.joinable()) {
        runThread.join();
    }
}

void LinuxCommonPipe::Send(unsigned char* data, int length) {
    if (length < 0 || (data == nullptr && length > 0)) {
        return;
    }
    const std::optional<std::string> directory = bql::platform::OpenPortDirectory();
    if (!directory) {
        return;
    }
    const std::optional<std::string> path = bql::platform::PortFilePath(*directory, remoteName);
    if (!path) {
        return;
    }
    datagram_protocol::socket socket(*sendContext);
    boost::system::error_code error;
    socket.open(datagram_protocol(), error);
    if (error) {
        return;
    }
    // Connecting finds out at once whether anybody has the remote port.
    socket.connect(datagram_protocol::endpoint(*path), error);
    if (error) {
        return;
    }
    int flags = MSG_NOSIGNAL;
    if (timeout > 0) {
        const timeval limit{timeout, 0};
        ::setsockopt(socket.native_handle(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    } else {
        flags |= MSG_DONTWAIT;
    }
    // A plain blocking send honours SO_SNDTIMEO; Asio's own send would wait again, without limit,
    // after the time-out. The result is ignored: the pipe's sends are fire-and-forget.
    (void)::send(socket.native_handle(), data, static_cast<std::size_t>(length), flags);
}

void LinuxCommonPipe::Receive() {}

bool LinuxCommonPipe::IsListening() {
    bql::MutexLock guard(lock);
    return runLoop != nullptr;
}

void LinuxCommonPipe::SetFlags(bool, bool) {}
