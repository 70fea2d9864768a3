#include "hubproxy/LocalPort.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

#include "bqlutil/LogWriter.h"
#include "platform/PortDirectory.h"

namespace {

using boost::asio::local::datagram_protocol;

}  // namespace

std::unique_ptr<LocalPort> LocalPort::Open(boost::asio::io_context& loop, const std::string& name, Delivery deliver) {
    const std::optional<std::string> directory = bql::platform::OpenPortDirectory();
    if (!directory) {
        return nullptr;
    }
    const std::optional<std::string> path = bql::platform::PortFilePath(*directory, name);
    if (!path) {
        return nullptr;
    }
    std::unique_ptr<LocalPort> port(new LocalPort(loop, std::move(deliver)));
    if (!port->Bind(*path)) {
        return nullptr;
    }
    port->ReceiveNext();
    return port;
}

LocalPort::LocalPort(boost::asio::io_context& loop, Delivery deliverTo) : socket(loop), deliver(std::move(deliverTo)) {}

LocalPort::~LocalPort() {
    boost::system::error_code ignored;
    socket.close(ignored);
    if (!path.empty()) {
        bql::platform::RemovePortFile(path, identity);
    }
}

bool LocalPort::Bind(const std::string& portPath) {
    boost::system::error_code error;
    socket.open(datagram_protocol(), error);
    // Received blocks are read only once they are there; a read must never wait, or stopping the
    // loop could not end the receiving thread.
    if (!error) {
        socket.non_blocking(true, error);
    }
    if (!error) {
        socket.bind(datagram_protocol::endpoint(portPath), error);
        if (error == boost::asio::error::address_in_use && bql::platform::ReclaimPortFile(portPath)) {
            socket.bind(datagram_protocol::endpoint(portPath), error);
        }
    }
    // The socket file gets its mode from the umask; only the owner may send to it, also once the
    // folder around it has been opened to others after it was checked.
    if (!error && ::chmod(portPath.c_str(), S_IRUSR | S_IWUSR) != 0) {
        error = boost::system::error_code(errno, boost::system::generic_category());
        ::unlink(portPath.c_str());
    }
    const std::optional<bql::platform::PortFileIdentity> bound =
        error ? std::nullopt : bql::platform::IdentifyPortFile(portPath);
    if (!bound) {
        return false;
    }
    path = portPath;
    identity = *bound;
    return true;
}

void LocalPort::ReceiveNext() {
    socket.async_wait(datagram_protocol::socket::wait_read, [this](const boost::system::error_code& error) {
        // Cancelled when the port closes; any other failure ends reception, the loop runs on
        // until the pipe stops it.
        if (error) {
            return;
        }
        ReceiveOne();
        ReceiveNext();
    });
}

void LocalPort::ReceiveOne() {
    try {
        boost::system::error_code error;
        // On a datagram socket this is the size of the next block, which may be zero.
        const std::size_t size = socket.available(error);
        if (error) {
            return;
        }
        std::unique_ptr<unsigned char[]> block(new unsigned char[size]);
        const std::size_t length = socket.receive(boost::asio::buffer(block.get(), size), 0, error);
        if (!error) {
            deliver(block.get(), static_cast<int>(length));
        }
    } catch (const std::exception& failure) {
        // Nothing may escape into the loop: the next block must still be received.
        LogWriter_error(failure.what(), __PRETTY_FUNCTION__, "<>");
    } catch (...) {
        LogWriter_error("unknown exception while delivering a received block", __PRETTY_FUNCTION__, "<>");
    }
}
