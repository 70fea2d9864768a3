#include "DeviceEnumerator.h"

#include "Device.h"
#include "vexilrt/Status.h"

namespace vexil {

DeviceEnumerator::DeviceEnumerator(const std::vector<Headset>& headsets, FaultInjector& faults) {
    devices_.reserve(headsets.size());
    try {
        for (const Headset& headset : headsets) {
            devices_.push_back(new Device(headset, faults));
        }
    } catch (...) {
        for (Device* device : devices_) {
            device->Release();
        }
        throw;
    }
}

DeviceEnumerator::~DeviceEnumerator() {
    for (Device* device : devices_) {
        device->Release();
    }
}

void DeviceEnumerator::Release() {
    if (references_.drop()) {
        delete this;
    }
}

IDevice* DeviceEnumerator::current() {
    if (!started_ || position_ >= devices_.size()) {
        return nullptr;
    }
    Device* device = devices_[position_];
    device->addReference();
    return device;
}

int32_t DeviceEnumerator::moveNext() {
    if (!started_) {
        started_ = true;
    } else if (position_ < devices_.size()) {
        ++position_;
    }
    return position_ < devices_.size() ? 1 : 0;
}

}  // namespace vexil
