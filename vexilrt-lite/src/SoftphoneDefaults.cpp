#include "SoftphoneDefaults.h"

#include "Guarded.h"
#include "Runtime.h"

namespace vexil {

int32_t SoftphoneDefaults::reserved1() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved2() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved3() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved4() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved5() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved6() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved7() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved8() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved9() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved10() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved11() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved12() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SoftphoneDefaults::reserved13() { return VEXIL_E_NOT_SUPPORTED; }

int32_t SoftphoneDefaults::setDefaultSoftphone(int32_t pluginId) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISoftphoneDefaults::setDefaultSoftphone")) {
            return *fault;
        }
        if (pluginId < 0) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        if (pluginId != 0 && !runtime_.sessions().isRegistered(pluginId)) {
            return VEXIL_E_NOT_FOUND;
        }
        default_.store(pluginId);
        return VEXIL_OK;
    });
}

}  // namespace vexil
