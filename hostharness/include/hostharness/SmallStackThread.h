// Calls into a plug-in from a thread with a small stack, as the client's secondary threads do:
// a plug-in that recurses on its input must be seen to fail here, not on a user's Mac.
#pragma once

#include <cstddef>
#include <functional>

#include "hostharness/HarnessStatus.h"

namespace hostharness {

// The stack a secondary thread gets by default on macOS, where the client runs.
constexpr std::size_t kSecondaryThreadStack = 512 * 1024;

// Runs `work` on a new thread (named "host-small-stk") with a stack of `stackBytes` and returns
// once that thread has ended. An exception `work` throws is rethrown here. ThreadNotStarted,
// with `work` not run, when the system refuses such a thread.
HarnessStatus runOnThreadWithStack(std::size_t stackBytes, const std::function<void()>& work);

}  // namespace hostharness
