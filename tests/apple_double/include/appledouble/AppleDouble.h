// What a test can ask the CoreFoundation and dispatch double about, beyond Apple's functions.
#pragma once

#include <cstddef>

namespace appledouble {

// CoreFoundation objects created and not yet freed: strings, data, message ports, run-loop
// sources and the run loops of live threads. Constants are not counted.
std::size_t liveObjectCount();

// Calls that CoreFoundation or dispatch would have crashed on or cannot serve here (a null or
// freed object, a double release, a reply request), counted since the last call, which clears
// the count. Each also writes one line to standard error. A process that ends with any left
// uncollected exits with status 70, so a misuse fails whatever test ran into it.
std::size_t takeMisuseCount();

// Runs everything queued on the main queue, waits until it has run and ends the main queue's
// thread; a later dispatch starts a new one. Must not be called from work on the main queue.
void drainMainQueue();

}  // namespace appledouble
