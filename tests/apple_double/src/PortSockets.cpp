#include "PortSockets.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/uio.h>

#include <cerrno>
#include <cmath>

#include "platform/PortDirectory.h"

namespace appledouble {
namespace {

using boost::asio::local::datagram_protocol;

// Longer waits than this are as good as endless for a test.
constexpr CFTimeInterval kLongestWait = 24.0 * 3600.0;

bool IsFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

void SetSendTimeout(Socket& socket, CFTimeInterval timeout) {
    const CFTimeInterval bounded = std::fmin(timeout, kLongestWait);
    timeval limit{};
    limit.tv_sec = static_cast<time_t>(bounded);
    limit.tv_usec = static_cast<suseconds_t>((bounded - std::floor(bounded)) * 1e6);
    if (limit.tv_sec == 0 && limit.tv_usec == 0) {
        limit.tv_usec = 1;  // zero would mean no limit at all
    }
    ::setsockopt(socket.native_handle(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

}  // namespace

boost::asio::io_context& idleContext() {
    // Never destroyed: ports may be released while the process exits.
    static boost::asio::io_context* const context = new boost::asio::io_context(1);
    return *context;
}

std::optional<std::string> portPath(const std::string& name) {
    if (!IsFileName(name)) {
        return std::nullopt;
    }
    const std::optional<std::string> directory = bql::platform::OpenPortDirectory();
    if (!directory) {
        return std::nullopt;
    }
    return bql::platform::PortFilePath(*directory, name);
}

std::optional<bql::platform::PortFileIdentity> bindPort(Socket& socket, const std::string& path) {
    boost::system::error_code error;
    socket.open(datagram_protocol(), error);
    if (!error) {
        socket.non_blocking(true, error);
    }
    if (!error) {
        socket.bind(datagram_protocol::endpoint(path), error);
        if (error == boost::asio::error::address_in_use && bql::platform::ReclaimPortFile(path)) {
            socket.bind(datagram_protocol::endpoint(path), error);
        }
    }
    if (error) {
        return std::nullopt;
    }
    return bql::platform::IdentifyPortFile(path);
}

bool connectPort(Socket& socket, const std::string& path) {
    boost::system::error_code error;
    socket.open(datagram_protocol(), error);
    if (!error) {
        socket.connect(datagram_protocol::endpoint(path), error);
    }
    return !error;
}

SInt32 sendMessage(Socket& socket, SInt32 messageId, const unsigned char* bytes, std::size_t length,
                   CFTimeInterval timeout) {
    iovec parts[2] = {{&messageId, kMessageIdSize}, {const_cast<unsigned char*>(bytes), length}};
    msghdr message{};
    message.msg_iov = parts;
    message.msg_iovlen = length > 0 ? 2 : 1;
    int flags = MSG_NOSIGNAL;
    if (timeout > 0.0) {
        SetSendTimeout(socket, timeout);
    } else {
        flags |= MSG_DONTWAIT;
    }
    ssize_t sent = 0;
    do {
        sent = ::sendmsg(socket.native_handle(), &message, flags);
    } while (sent < 0 && errno == EINTR);
    if (sent >= 0) {
        return kCFMessagePortSuccess;
    }
    switch (errno) {
        case EAGAIN:
            return kCFMessagePortSendTimeout;
        case ECONNREFUSED:
        case ENOTCONN:
        case EPIPE:
            return kCFMessagePortIsInvalid;
        default:
            return kCFMessagePortTransportError;
    }
}

}  // namespace appledouble
