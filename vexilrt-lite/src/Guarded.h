// Runs the body of an interface operation so that no exception (an allocation failure, say)
// ever leaves the runtime: the caller gets a status instead.
#pragma once

#include <cstdint>

#include "vexilrt/Status.h"

namespace vexil {

template <class Body>
int32_t guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return VEXIL_E_REFUSED;
    }
}

}  // namespace vexil
