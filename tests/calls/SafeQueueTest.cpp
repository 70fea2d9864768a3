#include "calls/safeQueue.h"

#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

namespace {

using IntQueue = safeQueue<std::shared_ptr<int>>;
constexpr auto kWait = std::chrono::seconds(5);
// Long enough for a blocked WaitAndGet to show that it is still blocked.
constexpr auto kStillBlocked = std::chrono::milliseconds(100);

TEST(SafeQueue, WaitAndGetBlocksUntilAnotherThreadPushes) {
    IntQueue queue;
    auto taken = std::async(std::launch::async, [&queue] {
        std::shared_ptr<int> out;
        queue.WaitAndGet(out);
        return *out;
    });
    EXPECT_EQ(taken.wait_for(kStillBlocked), std::future_status::timeout);
    queue.Push(std::make_shared<int>(42));
    ASSERT_EQ(taken.wait_for(kWait), std::future_status::ready);
    EXPECT_EQ(taken.get(), 42);
}

TEST(SafeQueue, DeliversInPushOrder) {
    IntQueue queue;
    queue.Push(std::make_shared<int>(1));
    queue.Push(std::make_shared<int>(2));
    std::shared_ptr<int> out;
    queue.WaitAndGet(out);
    EXPECT_EQ(*out, 1);
    queue.WaitAndGet(out);
    EXPECT_EQ(*out, 2);
}

TEST(SafeQueue, WaitAndGetReleasesThePreviousContentOfOut) {
    IntQueue queue;
    auto previous = std::make_shared<int>(7);
    std::weak_ptr<int> watch = previous;
    std::shared_ptr<int> out = std::move(previous);
    queue.Push(std::make_shared<int>(8));
    queue.WaitAndGet(out);
    EXPECT_TRUE(watch.expired());
}

TEST(SafeQueue, RemoveOfAnObjectNotInTheListChangesNothing) {
    IntQueue queue;
    queue.Push(std::make_shared<int>(1));
    auto stranger = std::make_shared<int>(1);  // equal value, different object
    queue.Remove(stranger);
    std::list<std::shared_ptr<int>> copy;
    queue.GetQueue(copy);
    EXPECT_EQ(copy.size(), 1u);
}

TEST(SafeQueue, RemoveWithASecondPointerToTheSameObjectRemovesIt) {
    IntQueue queue;
    auto first = std::make_shared<int>(1);
    auto second = std::make_shared<int>(2);
    queue.Push(first);
    queue.Push(second);
    std::list<std::shared_ptr<int>> copy;
    queue.GetQueue(copy);
    std::shared_ptr<int> lookedUp = copy.front();
    queue.Remove(lookedUp);
    std::list<std::shared_ptr<int>> after;
    queue.GetQueue(after);
    ASSERT_EQ(after.size(), 1u);
    EXPECT_EQ(after.front(), second);
}

TEST(SafeQueue, RemoveErasesOnlyTheFirstOccurrence) {
    IntQueue queue;
    auto item = std::make_shared<int>(1);
    queue.Push(item);
    queue.Push(item);
    queue.Remove(item);
    EXPECT_EQ(queue.Size(), 1u);
}

TEST(SafeQueue, GetQueueAppendsAfterExistingElements) {
    IntQueue queue;
    auto queued = std::make_shared<int>(2);
    queue.Push(queued);
    auto existing = std::make_shared<int>(1);
    std::list<std::shared_ptr<int>> out{existing};
    queue.GetQueue(out);
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out.front(), existing);
    EXPECT_EQ(out.back(), queued);
    EXPECT_EQ(queue.Size(), 1u);  // copying leaves the queue as it was
}

TEST(SafeQueue, FindFirstReturnsTheFrontmostMatchAndLeavesTheQueueAsItWas) {
    IntQueue queue;
    auto older = std::make_shared<int>(5);
    auto newer = std::make_shared<int>(5);
    queue.Push(std::make_shared<int>(4));
    queue.Push(older);
    queue.Push(newer);
    const auto found = queue.FindFirst([](const std::shared_ptr<int>& item) { return *item == 5; });
    EXPECT_EQ(found, older);
    EXPECT_EQ(queue.Size(), 3u);
}

TEST(SafeQueue, FindFirstWithoutAMatchReturnsAnEmptyPointer) {
    IntQueue queue;
    queue.Push(std::make_shared<int>(1));
    const auto found = queue.FindFirst([](const std::shared_ptr<int>& item) { return *item == 2; });
    EXPECT_EQ(found, nullptr);
}

TEST(SafeQueue, ClearThenWaitAndGetBlocks) {
    IntQueue queue;
    queue.Push(std::make_shared<int>(1));
    queue.Clear();
    EXPECT_EQ(queue.Size(), 0u);
    auto taken = std::async(std::launch::async, [&queue] {
        std::shared_ptr<int> out;
        queue.WaitAndGet(out);
        return *out;
    });
    EXPECT_EQ(taken.wait_for(kStillBlocked), std::future_status::timeout);
    queue.Push(std::make_shared<int>(3));
    ASSERT_EQ(taken.wait_for(kWait), std::future_status::ready);
    EXPECT_EQ(taken.get(), 3);
}

TEST(SafeQueue, DestructionReleasesHeldElements) {
    auto item = std::make_shared<int>(1);
    std::weak_ptr<int> watch = item;
    {
        IntQueue queue;
        queue.Push(item);
        item.reset();
        EXPECT_FALSE(watch.expired());
    }
    EXPECT_TRUE(watch.expired());
}

TEST(SafeQueue, ManyProducersOneConsumerLoseNothing) {
    IntQueue queue;
    constexpr int kProducers = 4;
    constexpr int kPerProducer = 2000;
    std::vector<std::thread> producers;
    for (int p = 0; p < kProducers; ++p) {
        producers.emplace_back([&queue, p] {
            for (int i = 0; i < kPerProducer; ++i) {
                queue.Push(std::make_shared<int>(p * kPerProducer + i));
            }
        });
    }
    std::vector<int> lastSeen(kProducers, -1);
    for (int n = 0; n < kProducers * kPerProducer; ++n) {
        std::shared_ptr<int> out;
        queue.WaitAndGet(out);
        const int producer = *out / kPerProducer;
        EXPECT_GT(*out, lastSeen[producer]);  // each producer's items stay in order
        lastSeen[producer] = *out;
    }
    for (auto& t : producers) t.join();
    EXPECT_EQ(queue.Size(), 0u);
}

}  // namespace
