#include "DeviceManager.h"

#include "DeviceEnumeration.h"
#include "Guarded.h"
#include "OutParam.h"
#include "Runtime.h"

namespace vexil {

int32_t DeviceManager::reserved1() { return VEXIL_E_NOT_SUPPORTED; }
int32_t DeviceManager::reserved2() { return VEXIL_E_NOT_SUPPORTED; }
int32_t DeviceManager::reserved3() { return VEXIL_E_NOT_SUPPORTED; }
int32_t DeviceManager::reserved4() { return VEXIL_E_NOT_SUPPORTED; }

int32_t DeviceManager::getDevices(IDeviceEnumeration** devices) {
    return guarded([&]() -> int32_t {
        clearOut(devices);
        if (const auto fault = runtime_.faults().take("IDeviceManager::getDevices")) {
            return *fault;
        }
        if (devices == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        *devices = new DeviceEnumeration(static_cast<int32_t>(runtime_.headsets().count()));
        return VEXIL_OK;
    });
}

}  // namespace vexil
