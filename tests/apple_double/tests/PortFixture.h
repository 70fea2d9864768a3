// A private port directory per test, a local port served by a run loop on a thread of its own,
// and the bookkeeping that proves each test released what it made.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "bqltest/Inbox.h"
#include "bqltest/ScopedEnvironment.h"
#include "bqltest/TempDirectory.h"
#include "appledouble/AppleDouble.h"

struct Message {
    SInt32 id;
    std::vector<UInt8> bytes;
    std::thread::id thread;
};

// Names made for a test, released by the fixture.
inline CFStringRef Name(const std::string& text) {
    return CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingASCII);
}

// A local port and the thread whose run loop serves it, as the Apple pipe sets them up.
class ServedPort {
public:
    explicit ServedPort(const std::string& name) : name_(Name(name)) {
        std::promise<CFRunLoopRef> started;
        std::future<CFRunLoopRef> loop = started.get_future();
        thread_ = std::thread([this, &started] {
            CFMessagePortContext context{0, this, nullptr, nullptr, nullptr};
            port_ = CFMessagePortCreateLocal(kCFAllocatorDefault, name_, &ServedPort::Callout, &context, nullptr);
            if (port_ == nullptr) {
                started.set_value(nullptr);
                return;
            }
            source_ = CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, port_, 0);
            CFRunLoopAddSource(CFRunLoopGetCurrent(), source_, kCFRunLoopCommonModes);
            threadId_ = std::this_thread::get_id();
            started.set_value(CFRunLoopGetCurrent());
            CFRunLoopRun();
            ran_.set_value();
            // The run also ends on its own when the only port is invalidated; the thread, and
            // with it its run loop, stays until Stop has stopped that loop.
            stopped_.get_future().wait();
        });
        loop_ = loop.get();
    }

    ~ServedPort() {
        Stop();
        CFRelease(name_);
    }

    void Stop() {
        if (loop_ != nullptr) {
            // A stop before the thread's run has begun ends nothing: stop until the run has ended.
            std::future<void> ran = ran_.get_future();
            do {
                CFRunLoopStop(loop_);
            } while (ran.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready);
            loop_ = nullptr;
            stopped_.set_value();
        }
        if (thread_.joinable()) {
            thread_.join();
        }
        if (port_ != nullptr) {
            CFMessagePortInvalidate(port_);
            CFRelease(port_);
            CFRelease(source_);
            port_ = nullptr;
        }
    }

    bool serving() const { return loop_ != nullptr; }
    CFMessagePortRef port() const { return port_; }
    std::thread::id thread() const { return threadId_; }
    bqltest::Inbox<Message> received;

private:
    static CFDataRef Callout(CFMessagePortRef, SInt32 id, CFDataRef data, void* info) {
        auto* self = static_cast<ServedPort*>(info);
        const UInt8* bytes = CFDataGetBytePtr(data);
        self->received.put(Message{id, std::vector<UInt8>(bytes, bytes + CFDataGetLength(data)), std::this_thread::get_id()});
        return nullptr;
    }

    CFStringRef name_;
    CFMessagePortRef port_ = nullptr;
    CFRunLoopSourceRef source_ = nullptr;
    CFRunLoopRef loop_ = nullptr;
    std::promise<void> ran_;
    std::promise<void> stopped_;
    std::thread::id threadId_;
    std::thread thread_;
};

class PortTest : public ::testing::Test {
protected:
    void SetUp() override {
        // The test thread's own run loop lives as long as the thread, past the test.
        CFRunLoopGetCurrent();
        baseline = appledouble::liveObjectCount();
    }
    void TearDown() override {
        EXPECT_EQ(appledouble::liveObjectCount(), baseline) << "objects leaked";
        EXPECT_EQ(appledouble::takeMisuseCount(), 0u);
    }

    // Sends `bytes` to the port called `name` as the Apple pipe does; the status of the send, or
    // 1 when there is no such port.
    static SInt32 SendTo(const std::string& name, std::vector<UInt8> bytes, SInt32 id = 0x1111,
                         CFTimeInterval timeout = 5.0) {
        CFStringRef remoteName = Name(name);
        CFMessagePortRef remote = CFMessagePortCreateRemote(kCFAllocatorDefault, remoteName);
        CFRelease(remoteName);
        if (remote == nullptr) {
            return 1;
        }
        CFDataRef data = CFDataCreate(kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>(bytes.size()));
        const SInt32 status = CFMessagePortSendRequest(remote, id, data, timeout, timeout, nullptr, nullptr);
        CFRelease(data);
        CFRelease(remote);
        return status;
    }

    bqltest::TempDirectory ports;
    bqltest::ScopedEnvironment portDirectory{"BQL_PORT_DIR", ports.path().string()};
    std::size_t baseline = 0;
};
