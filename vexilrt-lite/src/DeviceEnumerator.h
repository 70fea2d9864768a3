// IDeviceEnumerator: a snapshot of the headsets taken when it was asked for. It starts before
// the first device; moveNext() steps onto the next one, current() hands out a new reference.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Headset.h"
#include "RefCount.h"
#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class Device;
class FaultInjector;

class DeviceEnumerator final : public IDeviceEnumerator {
public:
    DeviceEnumerator(const std::vector<Headset>& headsets, FaultInjector& faults);

    void Release() override;
    IDevice* current() override;
    int32_t moveNext() override;

private:
    ~DeviceEnumerator();

    // One reference on each device, held by the enumerator.
    std::vector<Device*> devices_;
    // Before the first device while nothing was moved onto; devices_.size() past the end.
    std::size_t position_ = 0;
    bool started_ = false;
    RefCount references_;
};

}  // namespace vexil
