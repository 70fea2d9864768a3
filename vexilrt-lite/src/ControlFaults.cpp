// Control functions that make runtime operations fail on purpose.
#include <string>

#include "ControlSupport.h"
#include "Runtime.h"

using vexil::controlGuarded;
using vexil::FaultInjector;
using vexil::Runtime;

extern "C" int32_t vexilctl_inject_fault(const char* name, int32_t status, int32_t count) {
    return controlGuarded([&]() -> int32_t {
        if (name == nullptr || status == 0 || (count <= 0 && count != VEXILCTL_FAULT_ALWAYS)) {
            return VEXILCTL_E_INVALID_ARG;
        }
        if (!FaultInjector::isKnown(name)) {
            return VEXILCTL_E_NOT_FOUND;
        }
        Runtime::instance().faults().arm(name, status, count);
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_clear_faults(void) {
    return controlGuarded([]() -> int32_t {
        Runtime::instance().faults().clear();
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_fault_name_count(int32_t* count) {
    return controlGuarded([&]() -> int32_t {
        if (count == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *count = static_cast<int32_t>(FaultInjector::nameCount());
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_fault_name_at(int32_t index, char* buffer, int32_t capacity) {
    return controlGuarded([&]() -> int32_t {
        if (index < 0 || buffer == nullptr || capacity <= 0) {
            return VEXILCTL_E_INVALID_ARG;
        }
        const char* name = FaultInjector::nameAt(static_cast<std::size_t>(index));
        if (name == nullptr) {
            return VEXILCTL_E_NOT_FOUND;
        }
        return vexil::writeText(name, buffer, capacity);
    });
}
