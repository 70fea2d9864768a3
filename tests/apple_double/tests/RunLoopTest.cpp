#include <CoreFoundation/CoreFoundation.h>

#include <chrono>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "PortFixture.h"

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

TEST_F(RunLoop, StopBeforeTheRunEndsTheRunAtOnce) {
    ServedPort served("com.bqlhub.colloq");
    std::promise<CFRunLoopRef> created;
    std::promise<void> stopped;
    std::future<void> run = std::async(std::launch::async, [&] {
        CFStringRef name = Name("com.bqlhub.hub");
        CFMessagePortContext context{0, nullptr, nullptr, nullptr, nullptr};
        CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, name, nullptr, &context, nullptr);
        CFRunLoopSourceRef source = CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, port, 0);
        CFRunLoopAddSource(CFRunLoopGetCurrent(), source, kCFRunLoopCommonModes);
        created.set_value(CFRunLoopGetCurrent());
        stopped.get_future().wait();
        CFRunLoopRun();
        CFMessagePortInvalidate(port);
        CFRelease(source);
        CFRelease(port);
        CFRelease(name);
    });
    CFRunLoopStop(created.get_future().get());
    stopped.set_value();

    EXPECT_EQ(run.wait_for(60s), std::future_status::ready) << "the earlier stop was lost";
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
