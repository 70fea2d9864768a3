#include "Inbox.h"

#include <utility>

namespace demo {

void Inbox::add(HeardEvent event) {
    std::lock_guard<std::mutex> lock(mutex_);
    ++total_;
    if (event.thread == softphoneThread_ || event.threadName != kRuntimeThreadName) {
        ++offRuntimeThread_;
    }
    pending_.push_back(std::move(event));
}

std::vector<HeardEvent> Inbox::take() {
    std::lock_guard<std::mutex> lock(mutex_);
    std::vector<HeardEvent> taken;
    taken.swap(pending_);
    return taken;
}

std::size_t Inbox::total() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return total_;
}

std::size_t Inbox::offRuntimeThread() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return offRuntimeThread_;
}

}  // namespace demo
