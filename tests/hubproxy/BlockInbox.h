// Collects what a receiving thread delivers, so a test can wait for it with a time-out.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <vector>

template <class Item>
class Inbox {
public:
    void Put(Item item) {
        {
            std::lock_guard<std::mutex> guard(mutex_);
            items_.push_back(std::move(item));
        }
        arrived_.notify_all();
    }

    // True once at least `count` items have arrived, false when the time-out passes first.
    bool WaitFor(std::size_t count, std::chrono::seconds limit = std::chrono::seconds(10)) {
        std::unique_lock<std::mutex> guard(mutex_);
        return arrived_.wait_for(guard, limit, [&] { return items_.size() >= count; });
    }

    std::vector<Item> Items() {
        std::lock_guard<std::mutex> guard(mutex_);
        return items_;
    }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::vector<Item> items_;
};

using Block = std::vector<unsigned char>;
using BlockInbox = Inbox<Block>;
