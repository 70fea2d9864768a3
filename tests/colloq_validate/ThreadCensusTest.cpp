#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "NamedThread.h"
#include "ThreadCensus.h"

namespace colloqvalidate {
namespace {

TEST(ThreadCensus, SeesANamedThreadWhileItRuns) {
    std::mutex mutex;
    std::condition_variable released;
    bool done = false;
    std::thread thread;
    std::string error;
    ASSERT_TRUE(startNamedThread(
        thread, "census-probe",
        [&] {
            std::unique_lock<std::mutex> lock(mutex);
            released.wait(lock, [&] { return done; });
        },
        &error))
        << error;
    const std::vector<std::string> names = liveThreadNames();
    {
        std::lock_guard<std::mutex> lock(mutex);
        done = true;
    }
    released.notify_all();
    thread.join();
    EXPECT_EQ(std::count(names.begin(), names.end(), "census-probe"), 1);
}

TEST(ThreadCensus, NewThreadIsLeftOver) {
    const ThreadComparison result = compareThreads({"main"}, {"main", "worker"});
    EXPECT_FALSE(result.clean());
    EXPECT_EQ(result.leftOver, std::vector<std::string>{"worker"});
}

TEST(ThreadCensus, SecondThreadOfTheSameNameIsLeftOver) {
    const ThreadComparison result = compareThreads({"main", "worker"}, {"main", "worker", "worker"});
    EXPECT_EQ(result.leftOver, std::vector<std::string>{"worker"});
}

TEST(ThreadCensus, OnePipeReceiverMayStay) {
    const ThreadComparison result = compareThreads({"main"}, {"bql-pipe-rx", "main"});
    EXPECT_TRUE(result.clean());
    EXPECT_TRUE(result.pipeReceiverStayed);
}

TEST(ThreadCensus, SecondPipeReceiverIsLeftOver) {
    const ThreadComparison result = compareThreads({"bql-pipe-rx", "main"}, {"bql-pipe-rx", "bql-pipe-rx", "main"});
    EXPECT_EQ(result.leftOver, std::vector<std::string>{"bql-pipe-rx"});
    EXPECT_FALSE(result.pipeReceiverStayed);
}

TEST(ThreadCensus, EndedThreadIsNotLeftOver) {
    const ThreadComparison result = compareThreads({"main", "old"}, {"main"});
    EXPECT_TRUE(result.clean());
    EXPECT_EQ(result.vanished, std::vector<std::string>{"old"});
}

TEST(ThreadCensus, ThreadsOfTheHostsEnvironmentAreNotCounted) {
    const ThreadComparison result =
        compareThreads({"main"}, {"dispatch-main", "main", "worker"}, {"dispatch-main"});

    EXPECT_EQ(result.leftOver, (std::vector<std::string>{"worker"}));
    EXPECT_TRUE(result.vanished.empty());
}

TEST(ThreadCensus, NamesAreJoinedForTheReport) { EXPECT_EQ(joinNames({"a", "b"}), "a, b"); }

}  // namespace
}  // namespace colloqvalidate
