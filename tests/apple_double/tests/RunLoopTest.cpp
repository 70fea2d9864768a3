#include <CoreFoundation/CoreFoundation.h>

#include <chrono>
#include <future>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "PortFixture.h"
#include "bqltest/Inbox.h"

namespace {

using namespace std::chrono_literals;

using RunLoop = PortTest;

TEST_F(RunLoop, EachThreadHasItsOwnRunLoop) {
    CFRunLoopRef mine = CFRunLoopGetCurrent();
    CFRunLoopRef other = nullptr;
    std::thread([&other] { other = CFRunLoopGetCurrent(); }).join();

    EXPECT_EQ(CFRunLoopGetCurrent(), mine);
    EXPECT_NE(other, mine);
}

TEST_F(RunLoop, RunLoopOfAThreadEndsWithTheThread) {
    std::thread([] {
        CFRunLoopGetCurrent();
        CFRunLoopRun();
    }).join();

    EXPECT_EQ(appledouble::liveObjectCount(), baseline);
}

TEST_F(RunLoop, RunWithNothingScheduledReturnsAtOnce) {
    std::future<void> run = std::async(std::launch::async, [] { CFRunLoopRun(); });

    EXPECT_EQ(run.wait_for(60s), std::future_status::ready);
}

CFDataRef RecordMessageId(CFMessagePortRef, SInt32 id, CFDataRef, void* info) {
    static_cast<bqltest::Inbox<SInt32>*>(info)->put(id);
    return nullptr;
}

// A stop ends the run under way; one made while no run was under way ends nothing.
TEST_F(RunLoop, StopBeforeTheRunIsForgottenAndTheRunServesUntilTheNextStop) {
    bqltest::Inbox<SInt32> received;
    std::promise<CFRunLoopRef> created;
    std::promise<void> stoppedEarly;
    std::future<void> run = std::async(std::launch::async, [&] {
        CFStringRef name = Name("com.bqlhub.hub");
        CFMessagePortContext context{0, &received, nullptr, nullptr, nullptr};
        CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, name, &RecordMessageId, &context, nullptr);
        CFRunLoopSourceRef source = CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, port, 0);
        CFRunLoopAddSource(CFRunLoopGetCurrent(), source, kCFRunLoopCommonModes);
        created.set_value(CFRunLoopGetCurrent());
        stoppedEarly.get_future().wait();
        CFRunLoopRun();
        CFMessagePortInvalidate(port);
        CFRelease(source);
        CFRelease(port);
        CFRelease(name);
    });
    CFRunLoopRef loop = created.get_future().get();
    CFRunLoopStop(loop);
    stoppedEarly.set_value();

    ASSERT_EQ(SendTo("com.bqlhub.hub", {1, 2, 3}, 7), kCFMessagePortSuccess);
    EXPECT_TRUE(received.waitFor(1)) << "the run ended on a stop made before it began";
    CFRunLoopStop(loop);
    EXPECT_EQ(run.wait_for(60s), std::future_status::ready);
    EXPECT_EQ(received.items(), std::vector<SInt32>{7});
}

TEST_F(RunLoop, StopFromAnotherThreadEndsTheRunAndTheNextRunServesAgain) {
    ServedPort hub("com.bqlhub.hub");
    ASSERT_TRUE(hub.serving());

    hub.Stop();

    EXPECT_FALSE(hub.serving());
}

TEST_F(RunLoop, InvalidatingTheOnlyPortFromAnotherThreadEndsTheRun) {
    std::promise<CFMessagePortRef> created;
    CFStringRef name = Name("com.bqlhub.hub");
    std::future<void> run = std::async(std::launch::async, [&] {
        CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
        CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, name, nullptr, &context, nullptr);
        CFRunLoopSourceRef source = CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, port, 0);
        CFRunLoopAddSource(CFRunLoopGetCurrent(), source, kCFRunLoopCommonModes);
        CFRelease(source);
        created.set_value(port);
        CFRunLoopRun();
    });
    CFMessagePortRef port = created.get_future().get();

    CFMessagePortInvalidate(port);

    EXPECT_EQ(run.wait_for(60s), std::future_status::ready);
    CFRelease(port);
    CFRelease(name);
}

TEST_F(RunLoop, PortInvalidatedWhileServedGetsNoMoreMessages) {
    ServedPort hub("com.bqlhub.hub");
    ASSERT_EQ(SendTo("com.bqlhub.hub", {1}), kCFMessagePortSuccess);
    ASSERT_TRUE(hub.received.waitFor(1));

    CFMessagePortInvalidate(hub.port());

    EXPECT_EQ(SendTo("com.bqlhub.hub", {2}), 1) << "the name is still found";
}

TEST_F(RunLoop, AddingToAModeThatIsNotRunHereIsAMisuse) {
    CFStringRef name = Name("com.bqlhub.hub");
    CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
    CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, name, nullptr, &context, nullptr);
    CFRunLoopSourceRef source = CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, port, 0);

    CFRunLoopAddSource(CFRunLoopGetCurrent(), source, name);
    CFRunLoopAddSource(CFRunLoopGetCurrent(), nullptr, kCFRunLoopCommonModes);
    CFRunLoopStop(nullptr);

    EXPECT_EQ(appledouble::takeMisuseCount(), 3u);
    CFMessagePortInvalidate(port);
    CFRelease(source);
    CFRelease(port);
    CFRelease(name);
}

}  // namespace
