// The transport under the double's message ports, the same as the Linux pipe's: a port is a Unix
// datagram socket bound to a file named after it in the private port directory. Each message is
// one datagram: its 4-byte message id in host order, then its bytes.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>

#include "platform/AsioLocalSockets.h"
#include "platform/PortFile.h"

namespace appledouble {

using Socket = boost::asio::local::datagram_protocol::socket;

constexpr std::size_t kMessageIdSize = sizeof(SInt32);

// The context of sockets that no run loop serves: unscheduled local ports and senders. Never run.
boost::asio::io_context& idleContext();

// The file of the port called `name`, or nothing when the port directory is refused (which the
// directory check logs) or the name cannot be a file name there.
std::optional<std::string> portPath(const std::string& name);

// Binds `socket` to `path`; a file left by a dead owner is reclaimed. Nothing when a live owner
// has it or the path is taken by something else.
std::optional<bql::platform::PortFileIdentity> bindPort(Socket& socket, const std::string& path);

// Connects `socket` to the port at `path`; false when nobody receives there.
bool connectPort(Socket& socket, const std::string& path);

// Sends one message on a connected socket, waiting at most `timeout` seconds for room at the
// receiver (not at all when it is not positive). Returns a kCFMessagePort... status.
SInt32 sendMessage(Socket& socket, SInt32 messageId, const unsigned char* bytes, std::size_t length,
                   CFTimeInterval timeout);

}  // namespace appledouble
