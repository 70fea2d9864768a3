// CFMessagePort: local and remote ports, sends and invalidation.
#include "MessagePort.h"

#include <map>
#include <new>
#include <utility>

#include "Misuse.h"
#include "PortReceiver.h"
#include "RunLoop.h"
#include "Values.h"

namespace appledouble {
namespace {

// The valid named local ports of this process: a second local port of a name gets the first.
class LocalNames {
public:
    bql::Mutex lock;
    std::map<std::string, CFMessagePortRef> ports BQL_GUARDED_BY(lock);
};

LocalNames& localNames() {
    static LocalNames* const names = new LocalNames();
    return *names;
}

}  // namespace

MessagePort::MessagePort(std::string portName, std::optional<Socket> bound, std::string boundPath,
                         bql::platform::PortFileIdentity boundIdentity, CFMessagePortCallBack portCallout,
                         const CFMessagePortContext& portContext)
    : name(std::move(portName)),
      local(true),
      callout(portCallout),
      context(portContext),
      path(std::move(boundPath)),
      identity(boundIdentity),
      socket(std::move(bound)) {}

MessagePort::MessagePort(std::string portName, Socket connection)
    : name(std::move(portName)), local(false), callout(nullptr), context{}, path(), identity{},
      socket(std::move(connection)) {}

MessagePort::~MessagePort() {
    invalidate();
    if (context.release != nullptr) {
        context.release(context.info);
    }
}

bool MessagePort::isValid() {
    bql::MutexLock guard(lock);
    return valid;
}

void MessagePort::invalidate() {
    std::shared_ptr<boost::asio::io_context> loop;
    std::shared_ptr<PortReceiver> waiting;
    {
        bql::MutexLock guard(lock);
        if (!valid) {
            return;
        }
        valid = false;
        if (socket) {
            boost::system::error_code ignored;
            socket->close(ignored);
            socket.reset();
        }
        loop = scheduledLoop.lock();
        waiting = receiver.lock();
    }
    if (local && !name.empty()) {
        LocalNames& names = localNames();
        bql::MutexLock guard(names.lock);
        const auto found = names.ports.find(name);
        // The registry has let go of this port already when it is being destroyed, so it is
        // recognised by its address, which is its handle.
        if (found != names.ports.end() && found->second == static_cast<const void*>(static_cast<const Object*>(this))) {
            names.ports.erase(found);
        }
    }
    if (!path.empty()) {
        bql::platform::RemovePortFile(path, identity);
    }
    // The socket belongs to the loop's thread: the close is posted there, which also ends the
    // loop's run when nothing else is scheduled on it.
    if (loop && waiting) {
        boost::asio::post(*loop, [waiting] { waiting->close(); });
    }
    waiting.reset();
}

void MessagePort::schedule(RunLoop& runLoop, CFMessagePortRef self) {
    std::shared_ptr<boost::asio::io_context> loop = runLoop.context();
    std::shared_ptr<PortReceiver> waiting;
    {
        bql::MutexLock guard(lock);
        if (!valid || !local || scheduled || !socket) {
            return;
        }
        boost::system::error_code error;
        const Socket::native_handle_type descriptor = socket->release(error);
        socket.reset();
        if (error) {
            return;
        }
        scheduled = true;
        waiting = std::make_shared<PortReceiver>(self, Socket(*loop, boost::asio::local::datagram_protocol(), descriptor));
        scheduledLoop = loop;
        receiver = waiting;
    }
    boost::asio::post(*loop, [waiting] { waiting->waitForNext(); });
    waiting.reset();
}

SInt32 MessagePort::send(SInt32 messageId, const unsigned char* bytes, std::size_t length, CFTimeInterval timeout) {
    if (local) {
        // A local port is reached through its file, like any other sender would.
        if (!isValid() || path.empty()) {
            return kCFMessagePortIsInvalid;
        }
        Socket sender(idleContext());
        if (!connectPort(sender, path)) {
            return kCFMessagePortIsInvalid;
        }
        return sendMessage(sender, messageId, bytes, length, timeout);
    }
    SInt32 status = kCFMessagePortIsInvalid;
    {
        bql::MutexLock guard(lock);
        if (valid && socket) {
            status = sendMessage(*socket, messageId, bytes, length, timeout);
        }
    }
    // The receiving port has gone: this remote port is of no more use.
    if (status == kCFMessagePortIsInvalid) {
        invalidate();
    }
    return status;
}

void MessagePort::deliver(CFMessagePortRef self, SInt32 messageId, CFDataRef data) {
    if (callout == nullptr) {
        return;
    }
    CFDataRef reply = callout(self, messageId, data, context.info);
    if (reply != nullptr) {
        CFRelease(reply);
    }
}

}  // namespace appledouble

using appledouble::MessagePort;
using appledouble::Socket;
using appledouble::reportMisuse;

namespace {

// The text of a port name, or nothing (with a misuse) when `name` is no live string.
std::optional<std::string> NameText(CFStringRef name, const char* function) {
    const appledouble::String* text = appledouble::lookUp<appledouble::String>(name);
    if (text == nullptr) {
        reportMisuse(function, "the name is no live string");
        return std::nullopt;
    }
    return text->text;
}

CFMessagePortRef CreateLocal(CFStringRef name, CFMessagePortCallBack callout, const CFMessagePortContext& context,
                             bool& existing) {
    if (name == nullptr) {
        // Unnamed: nobody can look it up, so it never receives anything.
        return static_cast<CFMessagePortRef>(appledouble::adopt(std::make_unique<MessagePort>(
            std::string(), std::nullopt, std::string(), bql::platform::PortFileIdentity{}, callout, context)));
    }
    const std::optional<std::string> text = NameText(name, "CFMessagePortCreateLocal");
    if (!text) {
        return nullptr;
    }
    appledouble::LocalNames& names = appledouble::localNames();
    bql::MutexLock guard(names.lock);
    const auto found = names.ports.find(*text);
    // A port that is being destroyed can no longer be retained; its name is free then.
    if (found != names.ports.end() && appledouble::retain(found->second)) {
        existing = true;
        return found->second;
    }
    const std::optional<std::string> path = appledouble::portPath(*text);
    if (!path) {
        return nullptr;
    }
    Socket socket(appledouble::idleContext());
    const std::optional<bql::platform::PortFileIdentity> identity = appledouble::bindPort(socket, *path);
    if (!identity) {
        return nullptr;
    }
    auto port = static_cast<CFMessagePortRef>(appledouble::adopt(
        std::make_unique<MessagePort>(*text, std::move(socket), *path, *identity, callout, context)));
    names.ports[*text] = port;
    return port;
}

}  // namespace

extern "C" {

CFMessagePortRef CFMessagePortCreateLocal(CFAllocatorRef, CFStringRef name, CFMessagePortCallBack callout,
                                          CFMessagePortContext* context, Boolean* shouldFreeInfo) {
    if (shouldFreeInfo != nullptr) {
        *shouldFreeInfo = true;
    }
    if (context == nullptr) {
        reportMisuse(__func__, "null context");
        return nullptr;
    }
    CFMessagePortContext kept = *context;
    if (kept.retain != nullptr) {
        kept.info = const_cast<void*>(kept.retain(kept.info));
    }
    bool existing = false;
    CFMessagePortRef port = nullptr;
    try {
        port = CreateLocal(name, callout, kept, existing);
    } catch (const std::exception& failure) {
        reportMisuse(__func__, failure.what());
    }
    if (port == nullptr || existing) {
        // The port did not take the context: its retain is undone.
        if (kept.retain != nullptr && kept.release != nullptr) {
            kept.release(kept.info);
        }
        return port;
    }
    if (shouldFreeInfo != nullptr) {
        *shouldFreeInfo = false;
    }
    return port;
}

CFMessagePortRef CFMessagePortCreateRemote(CFAllocatorRef, CFStringRef name) {
    if (name == nullptr) {
        return nullptr;
    }
    const std::optional<std::string> text = NameText(name, __func__);
    if (!text) {
        return nullptr;
    }
    try {
        const std::optional<std::string> path = appledouble::portPath(*text);
        if (!path) {
            return nullptr;
        }
        Socket socket(appledouble::idleContext());
        if (!appledouble::connectPort(socket, *path)) {
            return nullptr;
        }
        return static_cast<CFMessagePortRef>(
            appledouble::adopt(std::make_unique<MessagePort>(*text, std::move(socket))));
    } catch (const std::exception& failure) {
        reportMisuse(__func__, failure.what());
        return nullptr;
    }
}

SInt32 CFMessagePortSendRequest(CFMessagePortRef remote, SInt32 msgid, CFDataRef data, CFTimeInterval sendTimeout,
                                CFTimeInterval, CFStringRef replyMode, CFDataRef* returnData) {
    if (returnData != nullptr) {
        *returnData = nullptr;
    }
    MessagePort* port = appledouble::lookUp<MessagePort>(remote);
    if (port == nullptr) {
        reportMisuse(__func__, "no live message port");
        return kCFMessagePortIsInvalid;
    }
    if (replyMode != nullptr && returnData != nullptr) {
        reportMisuse(__func__, "requests that wait for a reply are not served here");
        return kCFMessagePortTransportError;
    }
    const appledouble::Data* bytes = nullptr;
    if (data != nullptr) {
        bytes = appledouble::lookUp<appledouble::Data>(data);
        if (bytes == nullptr) {
            reportMisuse(__func__, "the data is no live data object");
            return kCFMessagePortTransportError;
        }
    }
    try {
        return bytes == nullptr ? port->send(msgid, nullptr, 0, sendTimeout)
                                : port->send(msgid, bytes->bytes.data(), bytes->bytes.size(), sendTimeout);
    } catch (const std::exception& failure) {
        reportMisuse(__func__, failure.what());
        return kCFMessagePortTransportError;
    }
}

void CFMessagePortInvalidate(CFMessagePortRef ms) {
    MessagePort* port = appledouble::lookUp<MessagePort>(ms);
    if (port == nullptr) {
        reportMisuse(__func__, "no live message port");
        return;
    }
    port->invalidate();
}

}  // extern "C"
