#include "SessionManager.h"

#include "Guarded.h"
#include "OutParam.h"
#include "Runtime.h"

namespace vexil {

int32_t SessionManager::reserved1() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManager::reserved4() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManager::reserved5() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManager::reserved6() { return VEXIL_E_NOT_SUPPORTED; }

int32_t SessionManager::unregisterSession(ISession* session) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISessionManager::unregisterSession")) {
            return *fault;
        }
        if (session == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        return runtime_.unregisterSession(session) ? VEXIL_OK : VEXIL_E_NOT_FOUND;
    });
}

int32_t SessionManager::setPluginStatus(int32_t pluginId, int32_t status) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISessionManager::setPluginStatus")) {
            return *fault;
        }
        if (status != VEXIL_PLUGIN_ACTIVE && status != VEXIL_PLUGIN_INACTIVE) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        return runtime_.sessions().setStatus(pluginId, status) ? VEXIL_OK : VEXIL_E_NOT_FOUND;
    });
}

int32_t SessionManager::registerCallback(ISessionManagerEvents* events) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISessionManager::registerCallback")) {
            return *fault;
        }
        if (events == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        switch (runtime_.managerSubscribers().add(events, runtime_.generation())) {
            case SubscribeResult::Added:
                return VEXIL_OK;
            case SubscribeResult::Duplicate:
                return VEXIL_E_ALREADY_EXISTS;
            case SubscribeResult::Closed:
                break;
        }
        return VEXIL_E_NOT_INITIALIZED;
    });
}

int32_t SessionManager::unregisterCallback(ISessionManagerEvents* events) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISessionManager::unregisterCallback")) {
            return *fault;
        }
        if (events == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        return runtime_.managerSubscribers().remove(events, runtime_.generation()) ? VEXIL_OK
                                                                                   : VEXIL_E_NOT_FOUND;
    });
}

int32_t SessionManager::getSoftphoneDefaults(ISoftphoneDefaults** defaults) {
    return guarded([&]() -> int32_t {
        clearOut(defaults);
        if (const auto fault = runtime_.faults().take("ISessionManager::getSoftphoneDefaults")) {
            return *fault;
        }
        if (defaults == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        *defaults = &runtime_.softphoneDefaults();
        return VEXIL_OK;
    });
}

}  // namespace vexil
