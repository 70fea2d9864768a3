#include <chrono>
#include <functional>
#include <future>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "hubproxy/ColloqCallArgs.h"
#include "hubproxy/ObservableBase.h"

namespace {

using namespace std::chrono_literals;

struct TestObserver;
using Registry = detail::ObservableBase<TestObserver, TestObserver*>;

// Records who was called, in order, and can run an action from inside its notification.
struct TestObserver {
    TestObserver(int observerId, std::vector<int>& callLog) : id(observerId), calls(callLog) {}

    void notifyPluginAboutEvent(const ColloqCallArgs& record) {
        calls.push_back(id);
        lastCallId = record.callId;
        if (duringCall) {
            duringCall();
        }
    }

    int id;
    std::vector<int>& calls;
    int lastCallId = 0;
    std::function<void()> duringCall;
};

ColloqCallArgs RecordWithCallId(int callId) {
    ColloqCallArgs record{};
    record.callId = callId;
    return record;
}

TEST(ObservableBase, SubscribingTheSameObserverTwiceKeepsOneEntry) {
    std::vector<int> calls;
    TestObserver observer(1, calls);
    Registry registry;

    EXPECT_EQ(registry.subscribe(&observer), 4);
    EXPECT_EQ(registry.subscribe(&observer), 2);
    registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(5));

    EXPECT_EQ(calls, std::vector<int>{1});
    EXPECT_EQ(observer.lastCallId, 5);
}

TEST(ObservableBase, CancellingTwiceReportsDoneThenNotFound) {
    std::vector<int> calls;
    TestObserver observer(1, calls);
    Registry registry;
    registry.subscribe(&observer);

    EXPECT_EQ(registry.cancel_subscription(&observer), 4);
    EXPECT_EQ(registry.cancel_subscription(&observer), 1);
    registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(5));
    EXPECT_TRUE(calls.empty());
}

TEST(ObservableBase, NullObserverIsAnsweredWithZero) {
    Registry registry;

    EXPECT_EQ(registry.subscribe(nullptr), 0);
    EXPECT_EQ(registry.cancel_subscription(nullptr), 0);
}

TEST(ObservableBase, FireReachesObserversInSubscriptionOrder) {
    std::vector<int> calls;
    TestObserver first(1, calls), second(2, calls), third(3, calls);
    Registry registry;
    registry.subscribe(&second);
    registry.subscribe(&first);
    registry.subscribe(&third);

    registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(1));

    EXPECT_EQ(calls, (std::vector<int>{2, 1, 3}));
}

TEST(ObservableBase, CancellingOneKeepsTheOthersInOrder) {
    std::vector<int> calls;
    TestObserver first(1, calls), second(2, calls), third(3, calls);
    Registry registry;
    registry.subscribe(&first);
    registry.subscribe(&second);
    registry.subscribe(&third);

    registry.cancel_subscription(&second);
    registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(1));

    EXPECT_EQ(calls, (std::vector<int>{1, 3}));
}

TEST(ObservableBase, ObserversGetACopyOfTheRecord) {
    std::vector<int> calls;
    TestObserver observer(1, calls);
    Registry registry;
    registry.subscribe(&observer);
    ColloqCallArgs record = RecordWithCallId(7);
    observer.duringCall = [&] { record.callId = 8; };

    registry.fire(&TestObserver::notifyPluginAboutEvent, record);

    EXPECT_EQ(observer.lastCallId, 7);
}

TEST(ObservableBase, ObserverMayCancelItselfDuringItsNotification) {
    std::vector<int> calls;
    TestObserver first(1, calls), second(2, calls);
    Registry registry;
    registry.subscribe(&first);
    registry.subscribe(&second);
    int result = -1;
    second.duringCall = [&] { result = registry.cancel_subscription(&second); };

    registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(1));
    registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(2));

    EXPECT_EQ(result, 4);
    EXPECT_EQ(calls, (std::vector<int>{1, 2, 1}));
}

TEST(ObservableBase, ObserverSubscribedDuringANotificationIsReachedInTheSameWalk) {
    std::vector<int> calls;
    TestObserver first(1, calls), added(2, calls);
    Registry registry;
    registry.subscribe(&first);
    first.duringCall = [&] {
        registry.subscribe(&added);
        first.duringCall = nullptr;
    };

    registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(1));

    EXPECT_EQ(calls, (std::vector<int>{1, 2}));
}

TEST(ObservableBase, CancellingFromAnotherThreadWaitsForTheDeliveryInProgress) {
    std::vector<int> calls;
    TestObserver observer(1, calls);
    Registry registry;
    registry.subscribe(&observer);
    std::promise<void> inside;
    std::promise<void> release;
    observer.duringCall = [&] {
        inside.set_value();
        release.get_future().wait();
    };

    std::future<void> delivery =
        std::async(std::launch::async, [&] { registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(1)); });
    inside.get_future().wait();
    std::future<int> cancel = std::async(std::launch::async, [&] { return registry.cancel_subscription(&observer); });

    EXPECT_EQ(cancel.wait_for(200ms), std::future_status::timeout) << "cancel returned during a delivery";
    release.set_value();
    ASSERT_EQ(cancel.wait_for(10s), std::future_status::ready);
    EXPECT_EQ(cancel.get(), 4);
    delivery.get();
}

TEST(ObservableBase, ExceptionFromAnObserverPropagatesAndFreesTheRegistry) {
    std::vector<int> calls;
    TestObserver thrower(1, calls), other(2, calls);
    Registry registry;
    registry.subscribe(&thrower);
    thrower.duringCall = [] { throw std::runtime_error("observer failed"); };

    EXPECT_THROW(registry.fire(&TestObserver::notifyPluginAboutEvent, RecordWithCallId(1)), std::runtime_error);
    std::future<int> subscribe = std::async(std::launch::async, [&] { return registry.subscribe(&other); });

    ASSERT_EQ(subscribe.wait_for(10s), std::future_status::ready) << "the registry stayed locked";
    EXPECT_EQ(subscribe.get(), 4);
}

}  // namespace
