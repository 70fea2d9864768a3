#include "Device.h"

#include <utility>

#include "FaultInjector.h"
#include "Guarded.h"
#include "OutParam.h"
#include "WideText.h"

namespace vexil {

int32_t HostCommand::reserved1() { return VEXIL_E_NOT_SUPPORTED; }
int32_t HostCommand::reserved2() { return VEXIL_E_NOT_SUPPORTED; }
int32_t HostCommand::reserved3() { return VEXIL_E_NOT_SUPPORTED; }
int32_t HostCommand::reserved4() { return VEXIL_E_NOT_SUPPORTED; }
int32_t HostCommand::reserved5() { return VEXIL_E_NOT_SUPPORTED; }
int32_t HostCommand::reserved6() { return VEXIL_E_NOT_SUPPORTED; }
int32_t HostCommand::reserved7() { return VEXIL_E_NOT_SUPPORTED; }

bool HostCommand::isFeatureSupported(int32_t feature) {
    return feature == VEXIL_FEATURE_DISPLAY && hasDisplay_;
}

Device::Device(Headset headset, FaultInjector& faults)
    : headset_(std::move(headset)), faults_(faults), hostCommand_(headset_.hasDisplay) {}

void Device::Release() {
    if (references_.drop()) {
        delete this;
    }
}

int32_t Device::reserved2() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved3() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved4() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved6() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved8() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved9() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved10() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved11() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved12() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved13() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Device::reserved14() { return VEXIL_E_NOT_SUPPORTED; }

int32_t Device::getDevicePath(wchar_t* buffer, int32_t capacity) {
    return guarded([&]() -> int32_t {
        if (const auto fault = faults_.take("IDevice::getDevicePath")) {
            return *fault;
        }
        return copyToWideBuffer(headset_.path, buffer, capacity);
    });
}

int32_t Device::getProductName(wchar_t* buffer, int32_t capacity) {
    return guarded([&]() -> int32_t {
        if (const auto fault = faults_.take("IDevice::getProductName")) {
            return *fault;
        }
        return copyToWideBuffer(headset_.productName, buffer, capacity);
    });
}

int32_t Device::getHostCommand(IHostCommand** command) {
    return guarded([&]() -> int32_t {
        clearOut(command);
        if (const auto fault = faults_.take("IDevice::getHostCommand")) {
            return *fault;
        }
        if (command == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        *command = &hostCommand_;
        return VEXIL_OK;
    });
}

}  // namespace vexil
