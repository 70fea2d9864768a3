#include "hostharness/SmallStackThread.h"

#include <pthread.h>

#include <exception>

#include "platform/ThreadName.h"

namespace hostharness {

namespace {

struct ThreadWork {
    const std::function<void()>& work;
    std::exception_ptr thrown;
};

void* runThreadWork(void* argument) {
    ThreadWork& threadWork = *static_cast<ThreadWork*>(argument);
    platform::nameCurrentThread("host-small-stk");
    try {
        threadWork.work();
    } catch (...) {
        threadWork.thrown = std::current_exception();
    }
    return nullptr;
}

}  // namespace

HarnessStatus runOnThreadWithStack(std::size_t stackBytes, const std::function<void()>& work) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) {
        return HarnessStatus::ThreadNotStarted;
    }
    ThreadWork threadWork{work, nullptr};
    pthread_t thread;
    const bool started = pthread_attr_setstacksize(&attributes, stackBytes) == 0 &&
                         pthread_create(&thread, &attributes, &runThreadWork, &threadWork) == 0;
    pthread_attr_destroy(&attributes);
    if (!started) {
        return HarnessStatus::ThreadNotStarted;
    }
    pthread_join(thread, nullptr);
    if (threadWork.thrown) {
        std::rethrow_exception(threadWork.thrown);
    }
    return HarnessStatus::Ok;
}

}  // namespace hostharness
