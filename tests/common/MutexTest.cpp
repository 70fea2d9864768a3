// The shared annotated mutexes: exclusion between threads, waits that release the mutex, and a
// recursive mutex taken again by a callee.
#include "bqlcommon/Mutex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(10);
constexpr int kIncrements = 20000;

class Counter {
public:
    void add() BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        ++value_;
    }
    int value() BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        return value_;
    }

private:
    bql::Mutex mutex_;
    int value_ BQL_GUARDED_BY(mutex_) = 0;
};

TEST(Mutex, KeepsIncrementsFromTwoThreadsApart) {
    Counter counter;
    auto addMany = [&counter] {
        for (int i = 0; i < kIncrements; ++i) {
            counter.add();
        }
    };
    std::thread other(addMany);
    addMany();
    other.join();
    EXPECT_EQ(counter.value(), 2 * kIncrements);
}

// A flag one thread raises under the mutex while another waits for it.
class Flag {
public:
    void raise() BQL_EXCLUDES(mutex_) {
        {
            bql::MutexLock lock(mutex_);
            raised_ = true;
        }
        changed_.notify_all();
    }
    // True once raised; the mutex must be free during the wait, or raise() could never run.
    bool awaitWithDeadline() BQL_EXCLUDES(mutex_) {
        const auto deadline = Clock::now() + kPatience;
        bql::MutexLock lock(mutex_);
        while (!raised_) {
            if (!lock.waitUntil(changed_, deadline)) {
                return raised_;
            }
        }
        return true;
    }
    bool awaitWithoutDeadline() BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        while (!raised_) {
            lock.wait(changed_);
        }
        return raised_;
    }
    bool waitPastDeadline() BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        return lock.waitUntil(changed_, Clock::now() - std::chrono::milliseconds(1));
    }

private:
    bql::Mutex mutex_;
    std::condition_variable changed_;
    bool raised_ BQL_GUARDED_BY(mutex_) = false;
};

TEST(MutexLock, WaitUntilReleasesTheMutexAndSeesTheFlagRaisedByAnotherThread) {
    Flag flag;
    std::thread raiser([&flag] { flag.raise(); });
    EXPECT_TRUE(flag.awaitWithDeadline());
    raiser.join();
}

TEST(MutexLock, WaitReleasesTheMutexAndSeesTheFlagRaisedByAnotherThread) {
    Flag flag;
    std::thread raiser([&flag] { flag.raise(); });
    EXPECT_TRUE(flag.awaitWithoutDeadline());
    raiser.join();
}

TEST(MutexLock, WaitUntilAPassedDeadlineReportsTheTimeOut) {
    Flag flag;
    EXPECT_FALSE(flag.waitPastDeadline());
}

// An observer registry's shape: a delivery holds the mutex while the callee locks it again.
class Registry {
public:
    int deliver() BQL_EXCLUDES(mutex_) {
        bql::RecursiveMutexLock lock(mutex_);
        ++deliveries_;
        return calledBack();
    }

private:
    // Deliberately not annotated: to the analysis this is a call out that comes back in.
    int calledBack() {
        bql::RecursiveMutexLock lock(mutex_);
        return deliveries_;
    }

    bql::RecursiveMutex mutex_;
    int deliveries_ BQL_GUARDED_BY(mutex_) = 0;
};

TEST(RecursiveMutex, IsTakenAgainByACalleeOnTheSameThread) {
    Registry registry;
    EXPECT_EQ(registry.deliver(), 1);
    EXPECT_EQ(registry.deliver(), 2);
}

}  // namespace
