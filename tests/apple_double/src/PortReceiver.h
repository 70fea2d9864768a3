// The wait of a scheduled local port for its next message, on its run loop's context. Only that
// loop's thread touches it; it lives as long as a wait or a posted close holds it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>

#include "PortSockets.h"

namespace appledouble {

class PortReceiver : public std::enable_shared_from_this<PortReceiver> {
public:
    // Keeps `port` alive while waiting for it.
    PortReceiver(CFMessagePortRef port, Socket socket);
    ~PortReceiver();
    PortReceiver(const PortReceiver&) = delete;
    PortReceiver& operator=(const PortReceiver&) = delete;

    void waitForNext();
    void close();

private:
    void receiveOne();

    const CFMessagePortRef port;
    Socket socket;
};

}  // namespace appledouble
