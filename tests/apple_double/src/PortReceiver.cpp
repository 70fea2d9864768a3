#include "PortReceiver.h"

#include <cstring>
#include <exception>
#include <vector>

#include "MessagePort.h"
#include "Misuse.h"
#include "Object.h"
#include "Values.h"

namespace appledouble {

PortReceiver::PortReceiver(CFMessagePortRef local, Socket moved) : port(local), socket(std::move(moved)) {
    retain(port);
}

PortReceiver::~PortReceiver() {
    boost::system::error_code ignored;
    socket.close(ignored);
    release(port);
}

void PortReceiver::waitForNext() {
    socket.async_wait(Socket::wait_read, [self = shared_from_this()](const boost::system::error_code& error) {
        // Cancelled when the port is invalidated: the loop then has nothing more to wait for.
        if (error) {
            return;
        }
        self->receiveOne();
        self->waitForNext();
    });
}

void PortReceiver::close() {
    boost::system::error_code ignored;
    socket.close(ignored);
}

void PortReceiver::receiveOne() {
    // Nothing may escape into the run loop.
    try {
        boost::system::error_code error;
        const std::size_t size = socket.available(error);
        if (error) {
            return;
        }
        std::vector<unsigned char> frame(size);
        const std::size_t length = socket.receive(boost::asio::buffer(frame), 0, error);
        MessagePort* target = lookUp<MessagePort>(port);
        if (error || length < kMessageIdSize || target == nullptr || !target->isValid()) {
            return;  // not a message of a port, or none is wanted any more
        }
        SInt32 messageId = 0;
        std::memcpy(&messageId, frame.data(), kMessageIdSize);
        CFDataRef data = CFDataCreate(kCFAllocatorDefault, frame.data() + kMessageIdSize,
                                      static_cast<CFIndex>(length - kMessageIdSize));
        if (data != nullptr) {
            target->deliver(port, messageId, data);
            CFRelease(data);
        }
    } catch (const std::exception& failure) {
        reportMisuse("message port callout", failure.what());
    }
}

}  // namespace appledouble
