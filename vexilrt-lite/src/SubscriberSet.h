// The subscribers of one kind of event, and the guarantee that goes with unsubscribing: once
// remove() or close() returns, no delivery to that subscriber is in progress and none follows.
//
// A set belongs to an owner (a runtime run, or a session's plug-in id) while it is open;
// subscribing, unsubscribing and delivering name the owner they mean, so that nothing meant
// for an earlier owner reaches a later one. The set's mutex is a leaf lock, and it is never
// held while a subscriber runs.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include "bqlcommon/Mutex.h"

namespace vexil {

enum class SubscribeResult { Added, Duplicate, Closed };

template <class Subscriber>
class SubscriberSet {
public:
    // Starts accepting subscribers for `owner` (non-zero), with none yet.
    void open(int32_t owner) BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        owner_ = owner;
        subscribers_.clear();
    }

    // Drops every subscriber and stops accepting, if `owner` still owns the set; then waits
    // until no delivery is in progress, unless the caller is the delivering thread.
    void close(int32_t owner) BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        if (owner_ != owner) {
            return;
        }
        owner_ = 0;
        subscribers_.clear();
        while (delivering_ != nullptr && deliveringThread_ != std::this_thread::get_id()) {
            lock.wait(deliveryEnded_);
        }
    }

    SubscribeResult add(Subscriber* subscriber, int32_t owner) BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        if (owner_ == 0 || owner_ != owner) {
            return SubscribeResult::Closed;
        }
        if (contains(subscriber)) {
            return SubscribeResult::Duplicate;
        }
        subscribers_.push_back(subscriber);
        return SubscribeResult::Added;
    }

    // False when the subscriber is not in the set of `owner`. Waits while it is being called,
    // unless the caller is the delivering thread (a subscriber may unsubscribe itself).
    bool remove(Subscriber* subscriber, int32_t owner) BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        if (owner_ == 0 || owner_ != owner || !contains(subscriber)) {
            return false;
        }
        subscribers_.erase(std::find(subscribers_.begin(), subscribers_.end(), subscriber));
        while (delivering_ == subscriber && deliveringThread_ != std::this_thread::get_id()) {
            lock.wait(deliveryEnded_);
        }
        return true;
    }

    std::size_t size() const BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        return subscribers_.size();
    }

    // Calls `call(subscriber)` for each subscriber of `owner`, one at a time, without the
    // lock; a subscriber removed meanwhile is skipped. Exceptions of a subscriber stop at it.
    template <class Call>
    void deliver(int32_t owner, Call&& call) BQL_EXCLUDES(mutex_) {
        std::vector<Subscriber*> snapshot;
        {
            bql::MutexLock lock(mutex_);
            if (owner_ == 0 || owner_ != owner) {
                return;
            }
            snapshot = subscribers_;
        }
        for (Subscriber* subscriber : snapshot) {
            if (!beginDelivery(subscriber, owner)) {
                continue;
            }
            try {
                call(subscriber);
            } catch (...) {
                // A subscriber's failure is its own; the others still hear the event.
            }
            endDelivery();
        }
    }

private:
    bool contains(Subscriber* subscriber) const BQL_REQUIRES(mutex_) {
        return std::find(subscribers_.begin(), subscribers_.end(), subscriber) != subscribers_.end();
    }

    bool beginDelivery(Subscriber* subscriber, int32_t owner) BQL_EXCLUDES(mutex_) {
        bql::MutexLock lock(mutex_);
        if (owner_ != owner || !contains(subscriber)) {
            return false;
        }
        delivering_ = subscriber;
        deliveringThread_ = std::this_thread::get_id();
        return true;
    }

    void endDelivery() BQL_EXCLUDES(mutex_) {
        {
            bql::MutexLock lock(mutex_);
            delivering_ = nullptr;
            deliveringThread_ = std::thread::id();
        }
        deliveryEnded_.notify_all();
    }

    mutable bql::Mutex mutex_;
    std::condition_variable deliveryEnded_;
    int32_t owner_ BQL_GUARDED_BY(mutex_) = 0;
    std::vector<Subscriber*> subscribers_ BQL_GUARDED_BY(mutex_);
    Subscriber* delivering_ BQL_GUARDED_BY(mutex_) = nullptr;
    std::thread::id deliveringThread_ BQL_GUARDED_BY(mutex_);
};

}  // namespace vexil
