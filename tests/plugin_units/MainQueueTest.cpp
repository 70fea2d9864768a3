// The main queue as it runs off Apple systems: the plug-in's own serial executor thread.
#include "platform/MainQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bqltest/Inbox.h"
#include "bqltest/ThreadNames.h"

namespace {

using ::testing::ElementsAre;

constexpr auto kWaitLimit = std::chrono::seconds(10);

// What the queued work did, in order, and on which thread.
class WorkRecord {
public:
    void add(int item) { done_.put({item, std::this_thread::get_id(), bqltest::currentThreadName()}); }
    bool waitForCount(std::size_t count) { return done_.waitFor(count, kWaitLimit); }

    std::vector<int> items() const { return each(&Work::item); }
    std::vector<std::thread::id> threads() const { return each(&Work::thread); }
    std::vector<std::string> names() const { return each(&Work::threadName); }

private:
    struct Work {
        int item;
        std::thread::id thread;
        std::string threadName;
    };

    template <class Field>
    std::vector<Field> each(Field Work::*field) const {
        std::vector<Field> values;
        for (const Work& work : done_.items()) {
            values.push_back(work.*field);
        }
        return values;
    }

    bqltest::Inbox<Work> done_;
};

// Threads of this process named like the executor.
int executorThreads() { return bqltest::threadsNamed("bql-mainqueue"); }

class MainQueue : public ::testing::Test {
protected:
    void TearDown() override { platform::drainMainQueue(); }
    WorkRecord record;
};

TEST_F(MainQueue, WorkRunsInOrderOnOneOtherNamedThread) {
    for (int item = 1; item <= 5; ++item) {
        platform::dispatchOnMainQueue([this, item] { record.add(item); });
    }
    ASSERT_TRUE(record.waitForCount(5));
    EXPECT_THAT(record.items(), ElementsAre(1, 2, 3, 4, 5));
    const std::vector<std::thread::id> threads = record.threads();
    for (const std::thread::id& thread : threads) {
        EXPECT_EQ(thread, threads.front());
    }
    EXPECT_NE(threads.front(), std::this_thread::get_id());
    EXPECT_EQ(record.names().front(), "bql-mainqueue");
}

TEST_F(MainQueue, DrainRunsEverythingQueuedAndEndsTheThread) {
    std::promise<void> releaseFirst;
    std::shared_future<void> released = releaseFirst.get_future().share();
    // The first item waits, so the others are likely still queued when the drain starts.
    platform::dispatchOnMainQueue([this, released] {
        released.wait();
        record.add(1);
    });
    platform::dispatchOnMainQueue([this] { record.add(2); });
    platform::dispatchOnMainQueue([this] { record.add(3); });
    std::thread release([&releaseFirst] { releaseFirst.set_value(); });

    platform::drainMainQueue();
    release.join();
    EXPECT_THAT(record.items(), ElementsAre(1, 2, 3));
    EXPECT_EQ(executorThreads(), 0);
}

TEST_F(MainQueue, DrainWithNothingQueuedReturns) {
    platform::drainMainQueue();
    EXPECT_EQ(executorThreads(), 0);
}

TEST_F(MainQueue, DispatchAfterADrainStartsTheQueueAgain) {
    platform::dispatchOnMainQueue([this] { record.add(1); });
    platform::drainMainQueue();
    ASSERT_EQ(executorThreads(), 0);
    platform::dispatchOnMainQueue([this] { record.add(2); });
    ASSERT_TRUE(record.waitForCount(2));
    EXPECT_THAT(record.items(), ElementsAre(1, 2));
    EXPECT_EQ(record.names().back(), "bql-mainqueue");
}

TEST_F(MainQueue, WorkQueuedByWorkDuringADrainStillRuns) {
    platform::dispatchOnMainQueue([this] {
        record.add(1);
        platform::dispatchOnMainQueue([this] { record.add(2); });
    });
    platform::drainMainQueue();
    EXPECT_THAT(record.items(), ElementsAre(1, 2));
}

TEST_F(MainQueue, WorkThatThrowsDoesNotStopTheQueue) {
    platform::dispatchOnMainQueue([] { throw std::runtime_error("reconnect failed"); });
    platform::dispatchOnMainQueue([this] { record.add(2); });
    ASSERT_TRUE(record.waitForCount(1));
    EXPECT_THAT(record.items(), ElementsAre(2));
}

}  // namespace
