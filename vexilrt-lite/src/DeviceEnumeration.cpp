#include "DeviceEnumeration.h"

#include "vexilrt/Status.h"

namespace vexil {

void DeviceEnumeration::Release() {
    if (references_.drop()) {
        delete this;
    }
}

int32_t DeviceEnumeration::reserved2() { return VEXIL_E_NOT_SUPPORTED; }

}  // namespace vexil
