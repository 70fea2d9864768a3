// The lower bound of sustained throughput: the same producers pushing onto a bare locked list
// (one mutex, one condition variable, a std::list, as the plug-in's event queue is built) that a
// single consumer empties.
#pragma once

#include <cstdint>

namespace bench {

// Events per second when `producers` threads each push `eventsPerProducer` events and one
// consumer takes them all; 0 when a thread could not be started.
double lockedListEventsPerSecond(int producers, int64_t eventsPerProducer);

}  // namespace bench
