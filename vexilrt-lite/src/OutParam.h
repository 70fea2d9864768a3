// Out-parameters start empty, so that every refusal, injected or real, leaves them so.
#pragma once

#include <cstdint>

namespace vexil {

template <class T>
void clearOut(T** out) {
    if (out != nullptr) {
        *out = nullptr;
    }
}

inline void clearOut(int32_t* out) {
    if (out != nullptr) {
        *out = 0;
    }
}

}  // namespace vexil
