#include "platform/MainQueue.h"

#include <dispatch/dispatch.h>

#include <exception>
#include <memory>

namespace platform {

namespace {

void runWork(void* context) {
    std::unique_ptr<std::function<void()>> work(static_cast<std::function<void()>*>(context));
    try {
        (*work)();
    } catch (...) {
        // Nothing may escape into the system's queue.
    }
}

}  // namespace

void dispatchOnMainQueue(std::function<void()> work) {
    dispatch_async_f(dispatch_get_main_queue(), new std::function<void()>(std::move(work)), &runWork);
}

void drainMainQueue() {}

}  // namespace platform
