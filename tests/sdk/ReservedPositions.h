// Placeholder operations of the runtime's interfaces: each test implementation fills them with
// SDKTEST_RESERVED(N), which records "reservedN()" and returns N, so a test can tell that the
// entry at position N really is the N-th placeholder.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "OperationLog.h"
#include "RawVtable.h"

#define SDKTEST_RESERVED(n)          \
    int32_t reserved##n() override { \
        log.record("reserved" #n);   \
        return n;                    \
    }

namespace sdktest {

template <typename Interface, typename Recorder>
void expectReservedPositions(Recorder& recorder, std::initializer_list<int> positions) {
    Interface* const object = &recorder;
    for (const int position : positions) {
        SCOPED_TRACE("position " + std::to_string(position));
        const int32_t result = callSlot<int32_t()>(object, indexOfPosition(position));
        EXPECT_EQ(result, position);
        EXPECT_EQ(recorder.log.last(), "reserved" + std::to_string(position) + "()");
    }
}

}  // namespace sdktest
