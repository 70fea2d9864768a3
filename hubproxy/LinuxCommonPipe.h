// The message-port pipe off Apple systems. Each port is a Unix datagram socket bound to a file named
// after the port in the private port directory. One named thread receives, running an io_context
// as its run loop; sends go out on the caller's thread, one datagram per block.
#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "bqlcommon/Mutex.h"
#include "hubproxy/IPipe.h"

namespace boost::asio {
class io_context;
}

class LinuxCommonPipe : public IPipe {
public:
    // Starts nothing. `timeout` is the send time-out in seconds.
    LinuxCommonPipe(std::string localName, std::string remoteName, std::function<void()> onConnected,
                    std::function<int(unsigned char*, int)> onReceive, int timeout);

    // Stops a running receiver, then starts a new one and returns once it listens on the local port
    // or has failed to get it (another live owner, a refused port directory). Throws
    // std::system_error "thread constructor failed" when no thread can be started.
    void StartPipe() override;
    // Stops the receiver and joins it, also one that ended after a failed port creation. The local
    // port's file is gone when it returns. Must not be called from inside onReceive. Start and stop
    // may come from different threads at once: the receiver never takes `lock`, so joining it
    // under that lock cannot wait for ever.
    void StopPipe() override;
    // Sends one datagram to the remote port and returns; dropped silently when nobody has the port,
    // waits at most `timeout` seconds for room at a full receiver. The socket connected to the
    // remote port is kept for the next send while the port's owner lives.
    void Send(unsigned char* data, int length) override;
    void Receive() override;
    // Whether the receiving thread serves the local port: false when stopped or when the last
    // start could not get the port.
    bool IsListening();
    // Kept as an empty hook; the endpoint calls it before stopping the pipe.
    void SetFlags(bool, bool);

protected:
    // Stops the pipe, so that a forgotten StopPipe never leaves a joinable thread behind.
    ~LinuxCommonPipe();

private:
    void StartInThread(boost::asio::io_context& loop, std::promise<void> started);
    void StopReceiver() BQL_REQUIRES(lock);
    // Opens a socket connected to the remote port in the checked port directory; false when the
    // directory is refused or nobody has the port.
    bool ConnectSendSocket() BQL_REQUIRES(sendLock);
    // False only when the remote port's owner has gone (the socket is then of no more use).
    bool SendOnSocket(const unsigned char* data, int length) BQL_REQUIRES(sendLock);
    void CloseSendSocket() BQL_REQUIRES(sendLock);

    const std::string localName;
    const std::string remoteName;
    const int timeout;
    // Stored but never called: this transport has no "connected" moment.
    const std::function<void()> onConnected;
    const std::function<int(unsigned char*, int)> onReceive;

    // Sends run on the callers' threads, one at a time: a send costs one system call while the
    // connected socket serves, instead of a directory check, a new socket and a connect each time.
    bql::Mutex sendLock;
    int sendSocket BQL_GUARDED_BY(sendLock) = -1;

    bql::Mutex lock;
    std::thread runThread BQL_GUARDED_BY(lock);
    // The receiving thread's loop, made before the thread so that a stop can never come too early:
    // a loop stopped before it runs returns at once.
    std::unique_ptr<boost::asio::io_context> runLoop BQL_GUARDED_BY(lock);
    // Set by the receiver once it serves the local port, cleared when it is stopped.
    std::atomic<bool> listening{false};
};
