// dispatch_once_f: the function runs exactly once per predicate; callers that come while it runs
// wait until it has finished.
#include <dispatch/dispatch.h>

#include <condition_variable>
#include <exception>
#include <mutex>

#include "Misuse.h"
#include "bqlcommon/Mutex.h"

namespace {

// A predicate starts at zero (untouched), holds kRunning while the function runs, then kDone.
constexpr dispatch_once_t kRunning = 1;
constexpr dispatch_once_t kDone = ~dispatch_once_t{0};

// One lock and wake-up for all predicates: the predicates themselves are the caller's plain
// integers, changed here only through atomic builtins.
bql::Mutex onceLock;
std::condition_variable onceDone;

}  // namespace

extern "C" void dispatch_once_f(dispatch_once_t* predicate, void* context, dispatch_function_t function) {
    if (predicate == nullptr || function == nullptr) {
        appledouble::reportMisuse(__func__, "null predicate or function");
        return;
    }
    if (__atomic_load_n(predicate, __ATOMIC_ACQUIRE) == kDone) {
        return;
    }
    {
        bql::MutexLock guard(onceLock);
        while (__atomic_load_n(predicate, __ATOMIC_ACQUIRE) == kRunning) {
            guard.wait(onceDone);
        }
        if (__atomic_load_n(predicate, __ATOMIC_ACQUIRE) == kDone) {
            return;
        }
        __atomic_store_n(predicate, kRunning, __ATOMIC_RELEASE);
    }
    try {
        function(context);
    } catch (...) {
        // dispatch would end the process here; the predicate still counts as done.
        appledouble::reportMisuse(__func__, "the function threw");
    }
    {
        bql::MutexLock guard(onceLock);
        __atomic_store_n(predicate, kDone, __ATOMIC_RELEASE);
    }
    onceDone.notify_all();
}
