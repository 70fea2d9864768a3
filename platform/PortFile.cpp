#include "platform/PortFile.h"

#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/AsioLocalSockets.h"

namespace bql::platform {
namespace {

// A socket file whose owner has gone refuses connections; a live owner accepts them.
bool IsAbandonedSocket(const std::string& path) {
    struct stat info {};
    if (path.size() >= sizeof(sockaddr_un{}.sun_path) || ::lstat(path.c_str(), &info) != 0 ||
        !S_ISSOCK(info.st_mode)) {
        return false;
    }
    boost::asio::io_context context;
    boost::asio::local::datagram_protocol::socket probe(context);
    boost::system::error_code error;
    probe.open(boost::asio::local::datagram_protocol(), error);
    if (error) {
        return false;
    }
    probe.connect(boost::asio::local::datagram_protocol::endpoint(path), error);
    return error == boost::asio::error::connection_refused;
}

}  // namespace

bool ReclaimPortFile(const std::string& path) {
    const std::optional<PortFileIdentity> found = IdentifyPortFile(path);
    if (!found) {
        return true;
    }
    if (!IsAbandonedSocket(path)) {
        return false;
    }
    RemovePortFile(path, *found);
    return true;
}

std::optional<PortFileIdentity> IdentifyPortFile(const std::string& path) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0) {
        return std::nullopt;
    }
    return PortFileIdentity{info.st_dev, info.st_ino};
}

void RemovePortFile(const std::string& path, const PortFileIdentity& identity) {
    const std::optional<PortFileIdentity> current = IdentifyPortFile(path);
    if (current && current->device == identity.device && current->inode == identity.inode) {
        ::unlink(path.c_str());
    }
}

}  // namespace bql::platform
