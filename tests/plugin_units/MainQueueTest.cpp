// The main queue as it runs off Apple systems: the plug-in's own serial executor thread.
#include "platform/MainQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using ::testing::ElementsAre;

constexpr auto kWaitLimit = std::chrono::seconds(10);

// What the queued work did, in order, and on which thread.
class WorkRecord {
public:
    void add(int item) {
        {
            std::lock_guard<std::mutex> guard(mutex_);
            items_.push_back(item);
            threads_.push_back(std::this_thread::get_id());
            char name[16] = {};
            pthread_getname_np(pthread_self(), name, sizeof name);
            names_.push_back(name);
        }
        changed_.notify_all();
    }

    bool waitForCount(std::size_t count) {
        std::unique_lock<std::mutex> guard(mutex_);
        return changed_.wait_for(guard, kWaitLimit, [&] { return items_.size() >= count; });
    }

    std::vector<int> items() {
        std::lock_guard<std::mutex> guard(mutex_);
        return items_;
    }
    std::vector<std::thread::id> threads() {
        std::lock_guard<std::mutex> guard(mutex_);
        return threads_;
    }
    std::vector<std::string> names() {
        std::lock_guard<std::mutex> guard(mutex_);
        return names_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<int> items_;
    std::vector<std::thread::id> threads_;
    std::vector<std::string> names_;
};

// Threads of this process named like the executor.
int executorThreads() {
    int count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream comm(task.path() / "comm");
        std::string name;
        std::getline(comm, name);
        if (name == "bql-mainqueue") {
            ++count;
        }
    }
    return count;
}

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
