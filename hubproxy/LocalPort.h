// The receiving end of the pipe off Apple systems: a datagram socket bound to the port's file in
// the port directory. A file left by a dead owner is reclaimed; a live owner makes Open fail.
// Closing removes the file again when it is still ours.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/AsioLocalSockets.h"

#include "platform/PortFile.h"

class LocalPort {
public:
    using Delivery = std::function<void(unsigned char* data, int length)>;

    // Binds the port called `name` and hands every datagram to `deliver`, one at a time, on the
    // thread that runs `loop`. Returns null when the port cannot be had.
    static std::unique_ptr<LocalPort> Open(boost::asio::io_context& loop, const std::string& name, Delivery deliver);

    ~LocalPort();
    LocalPort(const LocalPort&) = delete;
    LocalPort& operator=(const LocalPort&) = delete;

private:
    LocalPort(boost::asio::io_context& loop, Delivery deliver);

    bool Bind(const std::string& path);
    void ReceiveNext();
    void ReceiveOne();

    boost::asio::local::datagram_protocol::socket socket;
    Delivery deliver;
    std::string path;
    bql::platform::PortFileIdentity identity{};
};
