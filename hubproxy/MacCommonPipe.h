// The message-port pipe on Apple systems: two named CoreFoundation message ports. The local port is
// served by a run loop on one named thread; sends look the remote port up anew for every block.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <functional>
#include <future>
#include <string>
#include <thread>

#include "bqlcommon/Mutex.h"
#include "hubproxy/IPipe.h"

class MacCommonPipe : public IPipe {
public:
    // Starts nothing. `timeout` is the send and receive time-out of every send, in seconds.
    MacCommonPipe(std::string localName, std::string remoteName, std::function<void()> onConnected,
                  std::function<int(unsigned char*, int)> onReceive, int timeout);

    // Stops a running receiver, then starts a new one and returns once it serves the local port or
    // has failed to create it (another process owns the name). Throws std::system_error
    // "thread constructor failed" when no thread can be started.
    void StartPipe() override;
    // Stops the run loop, joins the receiver (also one that ended after a failed port creation) and
    // invalidates the local port. Must not be called from inside onReceive.
    void StopPipe() override;
    // Sends one message with id 0x1111 to the remote port and returns once it is queued; dropped
    // silently when the remote port does not exist.
    void Send(unsigned char* data, int length) override;
    void Receive() override;
    // Whether the receiving thread serves the local port: false when stopped or when the last
    // start could not get the port.
    bool IsListening();
    // Kept as an empty hook; the endpoint calls it before stopping the pipe.
    void SetFlags(bool, bool);

protected:
    // Stops the pipe, so that a forgotten StopPipe never leaves a joinable thread behind.
    ~MacCommonPipe();

private:
    void StartInThread(std::promise<void> started, std::promise<void> runEnded);
    static CFDataRef localPortCallback(CFMessagePortRef port, SInt32 messageId, CFDataRef data, void* info);

    CFMessagePortRef localPort BQL_GUARDED_BY(lock) = nullptr;
    CFRunLoopSourceRef runLoopSource BQL_GUARDED_BY(lock) = nullptr;
    const CFStringRef localName;
    const CFStringRef remoteName;
    CFMessagePortContext portContext;
    const int timeout;
    // Stored but never called: this transport has no "connected" moment.
    const std::function<void()> onConnected;
    const std::function<int(unsigned char*, int)> onReceive;
    std::thread runThread BQL_GUARDED_BY(lock);
    bql::Mutex lock;
    // The receiver's run loop, retained while it serves, and whether its run has ended.
    CFRunLoopRef runLoop BQL_GUARDED_BY(lock) = nullptr;
    std::future<void> receiverRunEnded BQL_GUARDED_BY(lock);
};
