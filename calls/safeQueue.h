// The one container the plug-in shares between threads: a list behind one mutex, with a
// condition signalled after every push. Used as the event queue (many producers, the worker
// consumes) and as the call list (callbacks append, the worker searches and prunes).
#pragma once

#include <cstddef>
#include <list>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>

template <typename T>
class safeQueue {
public:
    safeQueue() = default;
    safeQueue(const safeQueue&) = delete;
    safeQueue& operator=(const safeQueue&) = delete;
    virtual ~safeQueue() = default;

    // Wakes every waiter after the lock is released, so a woken consumer never blocks on it.
    void Push(const T& item) {
        {
            boost::unique_lock<boost::mutex> guard(mutex);
            items.push_back(item);
        }
        condition.notify_all();
    }

    // Blocks until an element is available; an interruption point of boost::thread.
    void WaitAndGet(T& out) {
        boost::unique_lock<boost::mutex> guard(mutex);
        while (items.empty()) {
            condition.wait(guard);
        }
        out = items.front();
        items.pop_front();
    }

    // Erases the first element that is the same object as item (for shared pointers: the
    // same managed pointer, not an equal value).
    void Remove(T& item) {
        boost::unique_lock<boost::mutex> guard(mutex);
        for (auto it = items.begin(); it != items.end(); ++it) {
            if (*it == item) {
                items.erase(it);
                return;
            }
        }
    }

    // Appends a copy of every element to out, so callers can walk them without the lock.
    void GetQueue(std::list<T>& out) {
        boost::unique_lock<boost::mutex> guard(mutex);
        out.insert(out.end(), items.begin(), items.end());
    }

    // A copy of the first element, front to back, for which matches is true; a value-initialised
    // T when none is. Only the match is copied, so a lookup costs no allocation; matches runs
    // under the lock and must not call out.
    template <typename Predicate>
    T FindFirst(Predicate matches) {
        boost::unique_lock<boost::mutex> guard(mutex);
        for (const T& item : items) {
            if (matches(item)) {
                return item;
            }
        }
        return T();
    }

    // No notification: a consumer blocked in WaitAndGet keeps waiting.
    void Clear() {
        boost::unique_lock<boost::mutex> guard(mutex);
        items.clear();
    }

    std::size_t Size() {
        boost::unique_lock<boost::mutex> guard(mutex);
        return items.size();
    }

private:
    std::list<T> items;           // guarded by mutex
    boost::mutex mutex;
    boost::condition_variable condition;
};
