// One-time initialisation of the handler singletons: dispatch_once on Apple systems,
// std::call_once elsewhere.
#pragma once

#if defined(__APPLE__)
#include <dispatch/dispatch.h>
#else
#include <mutex>
#endif

namespace platform {

#if defined(__APPLE__)
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
