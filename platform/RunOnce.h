// One-time initialisation of the handler singletons: dispatch_once wherever the Apple frameworks
// are built against (on Apple systems, or their test double), std::call_once elsewhere.
#pragma once

#if defined(__APPLE__) && !defined(BQL_APPLE_FRAMEWORKS)
#error "Apple builds take dispatch from the bql_platform target"
#endif

#if defined(BQL_APPLE_FRAMEWORKS)
#include <dispatch/dispatch.h>
#else
#include <mutex>
#endif

namespace platform {

#if defined(BQL_APPLE_FRAMEWORKS)
using OnceFlag = dispatch_once_t;

template <typename Init>
void runOnce(OnceFlag& flag, Init init) {
    dispatch_once_f(&flag, &init, [](void* context) { (*static_cast<Init*>(context))(); });
}
#else
using OnceFlag = std::once_flag;

template <typename Init>
void runOnce(OnceFlag& flag, Init init) {
    std::call_once(flag, init);
}
#endif

}  // namespace platform
