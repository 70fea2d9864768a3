#include "HandoffChain.h"

#include <future>

#include "Clock.h"
#include "platform/ThreadName.h"

namespace bench {

HandoffChain::HandoffChain(std::string name, int stages, LatencyRecorder& recorder)
    : name_(std::move(name)), recorder_(recorder) {
    for (int i = 0; i < stages; ++i) {
        stages_.push_back(std::make_unique<Stage>());
    }
}

HandoffChain::~HandoffChain() { stop(); }

bool HandoffChain::start() {
    for (std::size_t i = 0; i < stages_.size(); ++i) {
        std::promise<void> started;
        std::future<void> running = started.get_future();
        try {
            stages_[i]->thread = std::thread([this, i, started = std::move(started)]() mutable {
                platform::nameCurrentThread((name_ + std::to_string(i)).c_str());
                started.set_value();
                run(i);
            });
        } catch (const std::system_error&) {
            stop();
            return false;
        }
        running.wait();
    }
    return true;
}

void HandoffChain::hand(Stage& stage, int64_t stamp) {
    {
        bql::MutexLock lock(stage.mutex);
        stage.full = true;
        stage.stamp = stamp;
    }
    stage.wake.notify_one();
}

void HandoffChain::run(std::size_t index) {
    Stage& stage = *stages_[index];
    for (;;) {
        int64_t stamp = 0;
        {
            bql::MutexLock lock(stage.mutex);
            while (!stage.full && !stage.stopping) {
                lock.wait(stage.wake);
            }
            if (stage.stopping) {
                return;
            }
            stage.full = false;
            stamp = stage.stamp;
        }
        if (index + 1 < stages_.size()) {
            hand(*stages_[index + 1], stamp);
        } else {
            recorder_.record(nowNs() - stamp);
            finishTrip();
        }
    }
}

void HandoffChain::finishTrip() {
    {
        bql::MutexLock lock(doneMutex_);
        done_ = true;
    }
    doneWake_.notify_one();
}

bool HandoffChain::trip(std::chrono::milliseconds timeout) {
    post(nowNs());
    return awaitTrip(timeout);
}

void HandoffChain::post(int64_t startNs) { hand(*stages_.front(), startNs); }

bool HandoffChain::awaitTrip(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bql::MutexLock lock(doneMutex_);
    while (!done_) {
        if (!lock.waitUntil(doneWake_, deadline)) {
            return false;
        }
    }
    done_ = false;
    return true;
}

void HandoffChain::stop() {
    for (auto& stage : stages_) {
        {
            bql::MutexLock lock(stage->mutex);
            stage->stopping = true;
        }
        stage->wake.notify_one();
        if (stage->thread.joinable()) {
            stage->thread.join();
        }
    }
}

}  // namespace bench
