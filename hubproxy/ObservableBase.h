// A registry of observers that are notified through one of their member functions.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "bqlcommon/Mutex.h"

namespace detail {

// Results of subscribe and cancel_subscription.
enum SubscriptionResult : int {
    SUBSCRIPTION_NULL_OBSERVER = 0,
    SUBSCRIPTION_NOT_FOUND = 1,
    SUBSCRIPTION_ALREADY_PRESENT = 2,
    SUBSCRIPTION_DONE = 4,
};

template <class Observer, class ObserverPtr>
class ObservableBase {
public:
    ObservableBase() = default;
    ~ObservableBase() = default;
    ObservableBase(const ObservableBase&) = delete;
    ObservableBase& operator=(const ObservableBase&) = delete;

    // Appends `observer`; an observer is held at most once.
    int subscribe(ObserverPtr observer) {
        if (observer == nullptr) {
            return SUBSCRIPTION_NULL_OBSERVER;
        }
        bql::RecursiveMutexLock guard(mutex);
        if (std::find(subscribers.begin(), subscribers.end(), observer) != subscribers.end()) {
            return SUBSCRIPTION_ALREADY_PRESENT;
        }
        subscribers.push_back(observer);
        return SUBSCRIPTION_DONE;
    }

    // Removes `observer`, keeping the others in order. Waits for a delivery in progress on another
    // thread, so that once it returns the observer is never called again.
    int cancel_subscription(ObserverPtr observer) {
        if (observer == nullptr) {
            return SUBSCRIPTION_NULL_OBSERVER;
        }
        bql::RecursiveMutexLock guard(mutex);
        const auto found = std::find(subscribers.begin(), subscribers.end(), observer);
        if (found == subscribers.end()) {
            return SUBSCRIPTION_NOT_FOUND;
        }
        subscribers.erase(found);
        return SUBSCRIPTION_DONE;
    }

    // Calls `method` with a copy of `argument` on every observer, first to last. The registry stays
    // locked for the whole delivery: that is what lets cancel_subscription promise no further
    // calls. The lock is recursive, so an observer may subscribe or cancel from inside its call;
    // such a change applies to the walk in progress.
    template <class Argument>
    void fire(void (Observer::*method)(const Argument&), const Argument& argument) {
        bql::RecursiveMutexLock guard(mutex);
        const Argument copy = argument;
        for (std::size_t index = 0; index < subscribers.size(); ++index) {
            const ObserverPtr observer = subscribers[index];
            if (observer != nullptr) {
                (observer->*method)(copy);
            }
        }
    }

private:
    std::vector<ObserverPtr> subscribers BQL_GUARDED_BY(mutex);
    bql::RecursiveMutex mutex;
};

}  // namespace detail
