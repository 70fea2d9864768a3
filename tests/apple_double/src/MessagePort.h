// A message port of the double. A local port owns its name's socket in the port directory from
// creation to invalidation; once scheduled on a run loop, its messages go to its callout on the
// thread that runs that loop. A remote port is a socket connected to a local port's file.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Object.h"
#include "PortSockets.h"
#include "bqlcommon/Mutex.h"

namespace appledouble {

class RunLoop;
class PortReceiver;

class MessagePort final : public Object {
public:
    // A local port called `name` (empty: unnamed) that owns `socket`, bound at `path`.
    MessagePort(std::string name, std::optional<Socket> socket, std::string path,
                bql::platform::PortFileIdentity identity, CFMessagePortCallBack callout,
                const CFMessagePortContext& context);
    // A remote port reached through the connected `socket`.
    MessagePort(std::string name, Socket socket);
    ~MessagePort() override;

    bool isLocal() const { return local; }
    bool isValid();
    // Frees the name at once and ends the scheduled wait; later sends report the port invalid.
    void invalidate();
    // Moves the socket of a local port onto `loop`; `self` is the port's own handle. A port is
    // served by one loop only; later schedules are ignored.
    void schedule(RunLoop& loop, CFMessagePortRef self);
    SInt32 send(SInt32 messageId, const unsigned char* bytes, std::size_t length, CFTimeInterval timeout);
    // Hands a received message to the callout; the reply, if any, is released unread.
    void deliver(CFMessagePortRef self, SInt32 messageId, CFDataRef data);

    const std::string name;

private:
    const bool local;
    const CFMessagePortCallBack callout;
    const CFMessagePortContext context;
    const std::string path;
    const bql::platform::PortFileIdentity identity;

    bql::Mutex lock;
    bool valid BQL_GUARDED_BY(lock) = true;
    // A local port's socket until it is scheduled; a remote port's connection.
    std::optional<Socket> socket BQL_GUARDED_BY(lock);
    bool scheduled BQL_GUARDED_BY(lock) = false;
    std::weak_ptr<boost::asio::io_context> scheduledLoop BQL_GUARDED_BY(lock);
    std::weak_ptr<PortReceiver> receiver BQL_GUARDED_BY(lock);
};

}  // namespace appledouble
