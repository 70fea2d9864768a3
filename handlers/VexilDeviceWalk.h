// Walks the runtime's device list, giving each device back before moving on, also when the
// visitor throws.
#pragma once

#include <string>

#include "bqlcommon/ReleasingPtr.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace vexilwalk {

// Calls visit(device) for each device until it returns true. False when the enumerator is
// missing or no device matched.
template <typename Visit>
bool walkDevices(ISessionManagerInt* manager, Visit visit) {
    if (manager == nullptr) {
        return false;
    }
    IDeviceEnumerator* raw = nullptr;
    manager->getDeviceEnumerator(&raw);
    bql::ReleasingPtr<IDeviceEnumerator> enumerator(raw);
    if (!enumerator) {
        return false;
    }
    while (enumerator->moveNext() != 0) {
        bql::ReleasingPtr<IDevice> device(enumerator->current());
        if (device && visit(*device)) {
            return true;
        }
    }
    return false;
}

// A device text read through a fixed-size wide buffer, as the runtime fills it.
enum class DeviceText { Path, ProductName };
std::wstring readWide(IDevice& device, DeviceText which);
std::string readNarrow(IDevice& device, DeviceText which);

}  // namespace vexilwalk
