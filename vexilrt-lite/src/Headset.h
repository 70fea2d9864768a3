// A simulated headset as the runtime knows it.
#pragma once

#include <cstdint>
#include <string>

namespace vexil {

struct Headset {
    std::wstring path;
    std::wstring productName;
    uint16_t productId = 0;
    bool hasDisplay = false;
};

}  // namespace vexil
