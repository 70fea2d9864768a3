// IDeviceEnumeration: how many headsets were plugged in when it was asked for.
#pragma once

#include <cstdint>

#include "RefCount.h"
#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class DeviceEnumeration final : public IDeviceEnumeration {
public:
    explicit DeviceEnumeration(int32_t count) : count_(count) {}

    void Release() override;
    int32_t reserved2() override;
    int32_t count() override { return count_; }

private:
    ~DeviceEnumeration() = default;

    const int32_t count_;
    RefCount references_;
};

}  // namespace vexil
