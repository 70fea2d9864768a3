// The main dispatch queue: work that must run later, one item at a time, off the caller's
// thread. On Apple systems it is the application's main queue; elsewhere one process-wide
// serial executor thread that the plug-in drains and joins before it unloads.
#pragma once

#include <functional>

namespace platform {

void dispatchOnMainQueue(std::function<void()> work);

// Runs what is queued and ends the executor thread (a later dispatch starts a new one). Does
// nothing on Apple systems, whose main queue is not ours.
void drainMainQueue();

}  // namespace platform
