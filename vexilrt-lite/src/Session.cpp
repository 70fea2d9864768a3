#include "Session.h"

#include "CallCommand.h"
#include "Device.h"
#include "Guarded.h"
#include "OutParam.h"
#include "Runtime.h"

namespace vexil {

void Session::Release() {
    if (references_.drop()) {
        delete this;
    }
}

int32_t Session::reserved2() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Session::reserved4() { return VEXIL_E_NOT_SUPPORTED; }
int32_t Session::reserved8() { return VEXIL_E_NOT_SUPPORTED; }

int32_t Session::getPluginId(int32_t* pluginId) {
    return guarded([&]() -> int32_t {
        clearOut(pluginId);
        if (const auto fault = runtime_.faults().take("ISession::getPluginId")) {
            return *fault;
        }
        if (pluginId == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        const auto registered = runtime_.sessions().pluginIdOf(this);
        if (!registered) {
            return VEXIL_E_NOT_FOUND;
        }
        *pluginId = *registered;
        return VEXIL_OK;
    });
}

int32_t Session::registerCallback(ICallEvents* events) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISession::registerCallback")) {
            return *fault;
        }
        if (events == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        const auto pluginId = runtime_.sessions().pluginIdOf(this);
        if (!pluginId) {
            return VEXIL_E_NOT_FOUND;
        }
        switch (runtime_.callSubscribers().add(events, *pluginId)) {
            case SubscribeResult::Added:
                return VEXIL_OK;
            case SubscribeResult::Duplicate:
                return VEXIL_E_ALREADY_EXISTS;
            case SubscribeResult::Closed:
                break;
        }
        return VEXIL_E_NOT_FOUND;
    });
}

int32_t Session::unregisterCallback(ICallEvents* events) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISession::unregisterCallback")) {
            return *fault;
        }
        if (events == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        const auto pluginId = runtime_.sessions().pluginIdOf(this);
        if (!pluginId) {
            return VEXIL_E_NOT_FOUND;
        }
        return runtime_.callSubscribers().remove(events, *pluginId) ? VEXIL_OK : VEXIL_E_NOT_FOUND;
    });
}

int32_t Session::getCallCommand(ICallCommand** command) {
    return guarded([&]() -> int32_t {
        clearOut(command);
        if (const auto fault = runtime_.faults().take("ISession::getCallCommand")) {
            return *fault;
        }
        if (command == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        const auto pluginId = runtime_.sessions().pluginIdOf(this);
        if (!pluginId) {
            return VEXIL_E_NOT_FOUND;
        }
        *command = new CallCommand(runtime_, *pluginId);
        return VEXIL_OK;
    });
}

int32_t Session::getActiveDevice(IDevice** device) {
    return guarded([&]() -> int32_t {
        clearOut(device);
        if (const auto fault = runtime_.faults().take("ISession::getActiveDevice")) {
            return *fault;
        }
        if (device == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        if (!runtime_.sessions().pluginIdOf(this)) {
            return VEXIL_E_NOT_FOUND;
        }
        const auto active = runtime_.headsets().active();
        if (!active) {
            return VEXIL_E_NO_DEVICE;
        }
        *device = new Device(*active, runtime_.faults());
        return VEXIL_OK;
    });
}

}  // namespace vexil
