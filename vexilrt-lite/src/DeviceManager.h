// The runtime's IDeviceManager: the device count a softphone asks for to see whether any
// headset is there.
#pragma once

#include <cstdint>

#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class Runtime;

class DeviceManager final : public IDeviceManager {
public:
    explicit DeviceManager(Runtime& runtime) : runtime_(runtime) {}

    int32_t reserved1() override;
    int32_t reserved2() override;
    int32_t reserved3() override;
    int32_t reserved4() override;
    int32_t getDevices(IDeviceEnumeration** devices) override;

private:
    Runtime& runtime_;
};

}  // namespace vexil
