#include "hubproxy/MacCommonPipe.h"

#include <chrono>
#include <cstring>
#include <exception>
#include <memory>
#include <system_error>

#include "bqlutil/LogWriter.h"
#include "platform/ThreadName.h"

namespace {

constexpr const char* kReceiverThreadName = "bql-pipe-rx";
constexpr SInt32 kMessageId = 0x1111;
// How long a stop waits for the receiver's run to end before stopping again.
constexpr auto kStopRetryInterval = std::chrono::milliseconds(10);

CFStringRef MakePortName(const std::string& name) {
    return CFStringCreateWithCString(kCFAllocatorDefault, name.c_str(), kCFStringEncodingASCII);
}

}  // namespace

MacCommonPipe::MacCommonPipe(std::string local, std::string remote, std::function<void()> connected,
                             std::function<int(unsigned char*, int)> received, int seconds)
    : localName(MakePortName(local)),
      remoteName(MakePortName(remote)),
      portContext{0, this, nullptr, nullptr, nullptr},
      timeout(seconds),
      onConnected(std::move(connected)),
      onReceive(std::move(received)) {}

MacCommonPipe::~MacCommonPipe() {
    MacCommonPipe::StopPipe();
    if (remoteName != nullptr) {
        CFRelease(remoteName);
    }
    if (localName != nullptr) {
        CFRelease(localName);
    }
}

void MacCommonPipe::StartPipe() {
    StopPipe();
    std::promise<void> started;
    std::future<void> serving = started.get_future();
    std::promise<void> runEnded;
    {
        bql::MutexLock guard(lock);
        receiverRunEnded = runEnded.get_future();
        try {
            runThread = std::thread(&MacCommonPipe::StartInThread, this, std::move(started), std::move(runEnded));
        } catch (const std::system_error& failure) {
            throw std::system_error(failure.code(), "thread constructor failed");
        }
    }
    // The receiver takes the lock to set its port up, so the wait happens without it.
    serving.wait();
}

void MacCommonPipe::StartInThread(std::promise<void> started, std::promise<void> runEnded) {
    platform::nameCurrentThread(kReceiverThreadName);
    {
        bql::MutexLock guard(lock);
        Boolean existing = false;
        localPort = localName == nullptr
                        ? nullptr
                        : CFMessagePortCreateLocal(kCFAllocatorDefault, localName, localPortCallback, &portContext,
                                                   &existing);
        // A port of that name in this process comes back shared and keeps its first owner's
        // callout: it is taken, as when another process owns the name.
        if (localPort != nullptr && existing) {
            CFRelease(localPort);
            localPort = nullptr;
        }
        if (localPort == nullptr) {
            // Another owner has the name. The thread ends and stays joinable until StopPipe.
            started.set_value();
            return;
        }
        runLoopSource = CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, localPort, 0);
        runLoop = CFRunLoopGetCurrent();
        // Kept until StopPipe is done with it, which may be after this thread has ended.
        CFRetain(runLoop);
        CFRunLoopAddSource(runLoop, runLoopSource, kCFRunLoopCommonModes);
    }
    started.set_value();
    // Returns once StopPipe stops the loop.
    CFRunLoopRun();
    runEnded.set_value();
}

CFDataRef MacCommonPipe::localPortCallback(CFMessagePortRef, SInt32, CFDataRef data, void* info) {
    // A C callout: nothing may escape from here.
    try {
        auto* pipe = static_cast<MacCommonPipe*>(info);
        const CFIndex length = data == nullptr ? 0 : CFDataGetLength(data);
        std::unique_ptr<unsigned char[]> block(new unsigned char[static_cast<std::size_t>(length)]);
        if (length > 0) {
            std::memcpy(block.get(), CFDataGetBytePtr(data), static_cast<std::size_t>(length));
        }
        pipe->onReceive(block.get(), static_cast<int>(length));
    } catch (const std::exception& failure) {
        LogWriter_error(failure.what(), __PRETTY_FUNCTION__, "<>");
    } catch (...) {
        LogWriter_error("unknown exception while delivering a received block", __PRETTY_FUNCTION__, "<>");
    }
    return nullptr;
}

void MacCommonPipe::StopPipe() {
    bql::MutexLock guard(lock);
    if (runLoop != nullptr) {
        // A stop ends only a run under way: one that comes between the receiver's start and its
        // run is forgotten, so stop until the run has ended.
        do {
            CFRunLoopStop(runLoop);
        } while (receiverRunEnded.wait_for(kStopRetryInterval) != std::future_status::ready);
        CFRelease(runLoop);
        runLoop = nullptr;
    }
    // The receiver takes the lock only while it sets up, so joining under it is safe.
    if (runThread.joinable()) {
        runThread.join();
    }
    if (localPort != nullptr) {
        CFMessagePortInvalidate(localPort);
        CFRelease(localPort);
        CFRelease(runLoopSource);
        localPort = nullptr;
        runLoopSource = nullptr;
    }
}

void MacCommonPipe::Send(unsigned char* data, int length) {
    if (length < 0 || (data == nullptr && length > 0) || remoteName == nullptr) {
        return;
    }
    CFDataRef message = CFDataCreate(kCFAllocatorDefault, data, length);
    if (message == nullptr) {
        return;
    }
    // Looked up anew for every message, so the pipe reaches the hub as soon as its port exists.
    CFMessagePortRef remote = CFMessagePortCreateRemote(kCFAllocatorDefault, remoteName);
    if (remote != nullptr) {
        const CFTimeInterval limit = static_cast<CFTimeInterval>(timeout);
        // No reply mode: returns once the message is queued. The status is ignored on purpose.
        CFMessagePortSendRequest(remote, kMessageId, message, limit, limit, nullptr, nullptr);
        CFRelease(remote);
    }
    CFRelease(message);
}

void MacCommonPipe::Receive() {}

bool MacCommonPipe::IsListening() {
    bql::MutexLock guard(lock);
    return runLoop != nullptr;
}

void MacCommonPipe::SetFlags(bool, bool) {}
