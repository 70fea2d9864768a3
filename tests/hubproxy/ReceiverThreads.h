// Counts this process's threads that carry the pipe receiver's name.
#pragma once

#include "bqltest/ThreadNames.h"

inline int ReceiverThreadCount() { return bqltest::threadsNamed("bql-pipe-rx"); }
