// The shared annotated readers-writer mutex: readers beside each other, writers alone.
#include "bqlcommon/SharedMutex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

namespace {

constexpr auto kPatience = std::chrono::seconds(10);
constexpr int kWrites = 20000;

class Cell {
public:
    void increment() BQL_EXCLUDES(mutex_) {
        bql::ExclusiveLock lock(mutex_);
        ++value_;
    }
    int read() BQL_EXCLUDES(mutex_) {
        bql::SharedLock lock(mutex_);
        return value_;
    }
    // Runs `whileReading` with a shared hold on the cell.
    template <class Body>
    void readWhile(Body&& whileReading) BQL_EXCLUDES(mutex_) {
        bql::SharedLock lock(mutex_);
        whileReading();
    }

private:
    bql::SharedMutex mutex_;
    int value_ BQL_GUARDED_BY(mutex_) = 0;
};

TEST(SharedMutex, LetsASecondReaderInWhileTheFirstStillReads) {
    Cell cell;
    std::future_status secondReader = std::future_status::timeout;
    cell.readWhile([&] {
        auto read = std::async(std::launch::async, [&cell] { return cell.read(); });
        secondReader = read.wait_for(kPatience);
    });
    EXPECT_EQ(secondReader, std::future_status::ready);
}

TEST(SharedMutex, KeepsWritesFromTwoThreadsApart) {
    Cell cell;
    auto writeMany = [&cell] {
        for (int i = 0; i < kWrites; ++i) {
            cell.increment();
        }
    };
    std::thread other(writeMany);
    writeMany();
    other.join();
    EXPECT_EQ(cell.read(), 2 * kWrites);
}

}  // namespace
