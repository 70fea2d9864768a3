#include <dispatch/dispatch.h>
#include <pthread.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "bqltest/Inbox.h"
#include "appledouble/AppleDouble.h"

namespace {

using ::testing::ElementsAre;

struct Ran {
    int item;
    std::thread::id thread;
    std::string threadName;
};

bqltest::Inbox<Ran>* ranInto = nullptr;

void Record(void* context) {
    char name[16] = {};
    pthread_getname_np(pthread_self(), name, sizeof name);
    ranInto->put(Ran{static_cast<int>(reinterpret_cast<std::intptr_t>(context)), std::this_thread::get_id(), name});
}

void* Item(int item) { return reinterpret_cast<void*>(static_cast<std::intptr_t>(item)); }

class Dispatch : public ::testing::Test {
protected:
    void SetUp() override { ranInto = &ran; }
    void TearDown() override {
        appledouble::drainMainQueue();
        ranInto = nullptr;
        EXPECT_EQ(appledouble::takeMisuseCount(), 0u);
    }

    bqltest::Inbox<Ran> ran;
};

// Counts the runs of CountOnce and the runs that have finished.
struct OnceCounter {
    std::atomic<int> runs{0};
    std::atomic<int> finished{0};
};

void CountOnce(void* context) {
    auto* counter = static_cast<OnceCounter*>(context);
    counter->runs.fetch_add(1);
    std::this_thread::yield();
    counter->finished.fetch_add(1);
}

TEST_F(Dispatch, OnceRunsItsFunctionExactlyOnceUnderContentionAndEveryCallerSeesItDone) {
    static dispatch_once_t predicate = 0;
    OnceCounter counter;
    constexpr int kCallers = 16;
    std::atomic<int> ready{0};
    std::atomic<int> sawDone{0};
    std::vector<std::thread> callers;
    for (int at = 0; at < kCallers; ++at) {
        callers.emplace_back([&] {
            ready.fetch_add(1);
            while (ready.load() < kCallers) {
                std::this_thread::yield();
            }
            dispatch_once_f(&predicate, &counter, &CountOnce);
            sawDone.fetch_add(counter.finished.load() == 1 ? 1 : 0);
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }

    EXPECT_EQ(counter.runs.load(), 1);
    EXPECT_EQ(sawDone.load(), kCallers);
}

TEST_F(Dispatch, OnceDoesNotRunAgainForTheSamePredicate) {
    dispatch_once_t predicate = 0;
    OnceCounter counter;

    dispatch_once_f(&predicate, &counter, &CountOnce);
    dispatch_once_f(&predicate, &counter, &CountOnce);

    EXPECT_EQ(counter.runs.load(), 1);
}

TEST_F(Dispatch, MainQueueRunsWorkInOrderOnOneNamedThreadOfItsOwn) {
    for (int item = 1; item <= 5; ++item) {
        dispatch_async_f(dispatch_get_main_queue(), Item(item), &Record);
    }

    ASSERT_TRUE(ran.waitFor(5));
    const std::vector<Ran> items = ran.items();
    std::vector<int> order;
    for (const Ran& one : items) {
        order.push_back(one.item);
        EXPECT_EQ(one.thread, items.front().thread);
    }
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5));
    EXPECT_NE(items.front().thread, std::this_thread::get_id());
    EXPECT_EQ(items.front().threadName, "dispatch-main");
}

TEST_F(Dispatch, DrainRunsEverythingQueuedBeforeItReturns) {
    for (int item = 1; item <= 3; ++item) {
        dispatch_async_f(dispatch_get_main_queue(), Item(item), &Record);
    }

    appledouble::drainMainQueue();

    EXPECT_EQ(ran.items().size(), 3u);
}

TEST_F(Dispatch, WorkAfterADrainRunsAgain) {
    dispatch_async_f(dispatch_get_main_queue(), Item(1), &Record);
    appledouble::drainMainQueue();

    dispatch_async_f(dispatch_get_main_queue(), Item(2), &Record);

    ASSERT_TRUE(ran.waitFor(2));
    EXPECT_EQ(ran.items()[1].item, 2);
}

TEST_F(Dispatch, NullQueueOrWorkIsAMisuseAndRunsNothing) {
    dispatch_async_f(nullptr, Item(1), &Record);
    dispatch_async_f(dispatch_get_main_queue(), Item(2), nullptr);
    dispatch_once_f(nullptr, nullptr, &Record);

    appledouble::drainMainQueue();
    EXPECT_TRUE(ran.items().empty());
    EXPECT_EQ(appledouble::takeMisuseCount(), 3u);
}

}  // namespace
