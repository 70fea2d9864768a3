#include <CoreFoundation/CoreFoundation.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PortFixture.h"

namespace {

using namespace std::chrono_literals;

// A datagram socket bound at `path`, or -1.
int BindSocket(const std::string& path) {
    const int descriptor = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

bool Exists(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

CFDataRef NoReply(CFMessagePortRef, SInt32, CFDataRef, void*) { return nullptr; }

using MessagePort = PortTest;

TEST_F(MessagePort, SendStatusesHaveApplesValues) {
    EXPECT_EQ(kCFMessagePortSuccess, 0);
    EXPECT_EQ(kCFMessagePortSendTimeout, -1);
    EXPECT_EQ(kCFMessagePortReceiveTimeout, -2);
    EXPECT_EQ(kCFMessagePortIsInvalid, -3);
    EXPECT_EQ(kCFMessagePortTransportError, -4);
    EXPECT_EQ(kCFMessagePortBecameInvalidError, -5);
}

TEST_F(MessagePort, MessageReachesTheCalloutOnTheRunLoopsThreadWithItsIdAndBytes) {
    ServedPort hub("com.bqlhub.hub");
    ASSERT_TRUE(hub.serving());

    EXPECT_EQ(SendTo("com.bqlhub.hub", {1, 2, 250}), kCFMessagePortSuccess);

    ASSERT_TRUE(hub.received.waitFor(1));
    const Message message = hub.received.items()[0];
    EXPECT_EQ(message.id, 0x1111);
    EXPECT_EQ(message.bytes, (std::vector<UInt8>{1, 2, 250}));
    EXPECT_EQ(message.thread, hub.thread());
}

TEST_F(MessagePort, MessagesArriveInOrderIncludingEmptyOnes) {
    ServedPort hub("com.bqlhub.hub");

    ASSERT_EQ(SendTo("com.bqlhub.hub", {}, 1), kCFMessagePortSuccess);
    ASSERT_EQ(SendTo("com.bqlhub.hub", {7}, 2), kCFMessagePortSuccess);

    ASSERT_TRUE(hub.received.waitFor(2));
    EXPECT_EQ(hub.received.items()[0].id, 1);
    EXPECT_TRUE(hub.received.items()[0].bytes.empty());
    EXPECT_EQ(hub.received.items()[1].bytes, std::vector<UInt8>{7});
}

TEST_F(MessagePort, LocalPortIsAFileInThePortDirectoryUntilInvalidated) {
    ServedPort hub("com.bqlhub.hub");
    ASSERT_TRUE(Exists((ports / "com.bqlhub.hub").string()));

    hub.Stop();

    EXPECT_FALSE(Exists((ports / "com.bqlhub.hub").string()));
}

TEST_F(MessagePort, RemotePortOfAMissingNameIsNull) { EXPECT_EQ(SendTo("com.bqlhub.nobody", {1}), 1); }

TEST_F(MessagePort, RemotePortOfANullNameIsNull) {
    EXPECT_EQ(CFMessagePortCreateRemote(kCFAllocatorDefault, nullptr), nullptr);
}

TEST_F(MessagePort, SecondLocalPortOfANameInThisProcessIsTheFirstAndSaysSo) {
    ServedPort first("com.bqlhub.colloq");
    CFStringRef name = Name("com.bqlhub.colloq");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    Boolean shouldFreeInfo = false;

    CFMessagePortRef second = CFMessagePortCreateLocal(kCFAllocatorDefault, name, NoReply, &context, &shouldFreeInfo);

    EXPECT_EQ(second, first.port());
    EXPECT_TRUE(shouldFreeInfo);
    CFRelease(second);
    CFRelease(name);
}

TEST_F(MessagePort, LocalPortOfANameALiveOwnerHoldsIsNull) {
    // A socket bound outside this process's message ports: to the double, another process.
    const int owner = BindSocket((ports / "com.bqlhub.colloq").string());
    ASSERT_GE(owner, 0);
    CFStringRef name = Name("com.bqlhub.colloq");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    Boolean shouldFreeInfo = false;

    EXPECT_EQ(CFMessagePortCreateLocal(kCFAllocatorDefault, name, NoReply, &context, &shouldFreeInfo), nullptr);

    EXPECT_TRUE(shouldFreeInfo);
    ::close(owner);
    CFRelease(name);
}

TEST_F(MessagePort, NameLeftByADeadOwnerIsTakenOver) {
    ::close(BindSocket((ports / "com.bqlhub.colloq").string()));
    CFStringRef name = Name("com.bqlhub.colloq");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    Boolean shouldFreeInfo = true;

    CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, name, NoReply, &context, &shouldFreeInfo);

    ASSERT_NE(port, nullptr);
    EXPECT_FALSE(shouldFreeInfo);
    CFMessagePortInvalidate(port);
    CFRelease(port);
    CFRelease(name);
}

TEST_F(MessagePort, SendToAnInvalidatedPortIsInvalid) {
    ServedPort hub("com.bqlhub.hub");
    CFStringRef name = Name("com.bqlhub.hub");
    CFMessagePortRef remote = CFMessagePortCreateRemote(kCFAllocatorDefault, name);
    ASSERT_NE(remote, nullptr);
    CFMessagePortInvalidate(remote);

    EXPECT_EQ(CFMessagePortSendRequest(remote, 1, nullptr, 1.0, 1.0, nullptr, nullptr), kCFMessagePortIsInvalid);

    CFRelease(remote);
    CFRelease(name);
}

TEST_F(MessagePort, SendAfterTheReceiverWentAwayIsInvalid) {
    auto hub = std::make_unique<ServedPort>("com.bqlhub.hub");
    CFStringRef name = Name("com.bqlhub.hub");
    CFMessagePortRef remote = CFMessagePortCreateRemote(kCFAllocatorDefault, name);
    ASSERT_NE(remote, nullptr);
    hub.reset();

    EXPECT_EQ(CFMessagePortSendRequest(remote, 1, nullptr, 1.0, 1.0, nullptr, nullptr), kCFMessagePortIsInvalid);
    EXPECT_EQ(CFMessagePortSendRequest(remote, 1, nullptr, 1.0, 1.0, nullptr, nullptr), kCFMessagePortIsInvalid);

    CFRelease(remote);
    CFRelease(name);
}

TEST_F(MessagePort, SendToAPortNobodyServesGivesUpAfterItsTimeOut) {
    // Created but never scheduled: its messages pile up unread until no more fit.
    CFStringRef name = Name("com.bqlhub.hub");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    CFMessagePortRef stuck = CFMessagePortCreateLocal(kCFAllocatorDefault, name, NoReply, &context, nullptr);
    ASSERT_NE(stuck, nullptr);
    CFMessagePortRef remote = CFMessagePortCreateRemote(kCFAllocatorDefault, name);
    ASSERT_NE(remote, nullptr);
    std::vector<UInt8> block(2196);
    CFDataRef data = CFDataCreate(kCFAllocatorDefault, block.data(), static_cast<CFIndex>(block.size()));

    SInt32 status = kCFMessagePortSuccess;
    for (int sent = 0; sent < 100000 && status == kCFMessagePortSuccess; ++sent) {
        status = CFMessagePortSendRequest(remote, 1, data, 0.0, 0.0, nullptr, nullptr);
    }
    ASSERT_EQ(status, kCFMessagePortSendTimeout) << "the receiver never filled up";
    std::future<SInt32> timed = std::async(std::launch::async, [&] {
        return CFMessagePortSendRequest(remote, 1, data, 0.2, 0.2, nullptr, nullptr);
    });

    ASSERT_EQ(timed.wait_for(60s), std::future_status::ready) << "the send never gave up";
    EXPECT_EQ(timed.get(), kCFMessagePortSendTimeout);
    CFRelease(data);
    CFRelease(remote);
    CFMessagePortInvalidate(stuck);
    CFRelease(stuck);
    CFRelease(name);
}

TEST_F(MessagePort, LocalPortOfANameThatCannotBeAFileIsNull) {
    CFStringRef name = Name("../escape");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    Boolean shouldFreeInfo = false;

    EXPECT_EQ(CFMessagePortCreateLocal(kCFAllocatorDefault, name, NoReply, &context, &shouldFreeInfo), nullptr);

    EXPECT_TRUE(shouldFreeInfo);
    CFRelease(name);
}

TEST_F(MessagePort, InvalidatedPortGivesNoRunLoopSource) {
    CFStringRef name = Name("com.bqlhub.colloq");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, name, NoReply, &context, nullptr);
    ASSERT_NE(port, nullptr);
    CFMessagePortInvalidate(port);
    CFMessagePortInvalidate(port);

    EXPECT_EQ(CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, port, 0), nullptr);

    CFRelease(port);
    CFRelease(name);
}

TEST_F(MessagePort, InvalidatingAFreedPortIsAMisuse) {
    CFStringRef name = Name("com.bqlhub.colloq");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, name, NoReply, &context, nullptr);
    CFRelease(port);

    CFMessagePortInvalidate(port);
    EXPECT_EQ(CFMessagePortSendRequest(port, 1, nullptr, 1.0, 1.0, nullptr, nullptr), kCFMessagePortIsInvalid);

    EXPECT_EQ(appledouble::takeMisuseCount(), 2u);
    CFRelease(name);
}

TEST_F(MessagePort, RequestThatWaitsForAReplyIsRefusedAsUnserved) {
    ServedPort hub("com.bqlhub.hub");
    CFStringRef name = Name("com.bqlhub.hub");
    CFMessagePortRef remote = CFMessagePortCreateRemote(kCFAllocatorDefault, name);
    CFDataRef reply = nullptr;

    EXPECT_EQ(CFMessagePortSendRequest(remote, 1, nullptr, 1.0, 1.0, kCFRunLoopCommonModes, &reply),
              kCFMessagePortTransportError);

    EXPECT_EQ(reply, nullptr);
    EXPECT_EQ(appledouble::takeMisuseCount(), 1u);
    CFRelease(remote);
    CFRelease(name);
}

}  // namespace
