#include "SessionManagerInt.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "DeviceEnumerator.h"
#include "Guarded.h"
#include "OutParam.h"
#include "Runtime.h"
#include "Session.h"
#include "bqlcommon/ReleasingPtr.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace vexil {

namespace {

bool isSoftphoneName(const std::wstring& name) {
    return std::any_of(std::begin(VEXIL_SOFTPHONE_NAMES), std::end(VEXIL_SOFTPHONE_NAMES),
                       [&name](const wchar_t* known) { return name == known; });
}

}  // namespace

int32_t SessionManagerInt::reserved2() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved3() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved4() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved5() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved6() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved7() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved8() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved9() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved10() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved11() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved12() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved14() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved15() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved16() { return VEXIL_E_NOT_SUPPORTED; }
int32_t SessionManagerInt::reserved18() { return VEXIL_E_NOT_SUPPORTED; }

int32_t SessionManagerInt::registerSession(const wchar_t* name, int32_t kind, ISession** session) {
    return guarded([&]() -> int32_t {
        clearOut(session);
        if (const auto fault = runtime_.faults().take("ISessionManagerInt::registerSession")) {
            return *fault;
        }
        if (name == nullptr || session == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        const std::wstring softphone(name);
        if (!isSoftphoneName(softphone) || kind != VEXIL_SESSION_KIND_SOFTPHONE) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        bql::ReleasingPtr<Session> handle(new Session(runtime_));
        const auto pluginId = runtime_.sessions().add(softphone, kind, handle.get());
        if (!pluginId) {
            return VEXIL_E_ALREADY_EXISTS;
        }
        runtime_.callSubscribers().open(*pluginId);
        // A shut-down that ran meanwhile did not see this session: take it back.
        if (!runtime_.running()) {
            runtime_.unregisterSession(handle.get());
            return VEXIL_E_NOT_INITIALIZED;
        }
        *session = handle.release();
        return VEXIL_OK;
    });
}

int32_t SessionManagerInt::getDeviceEnumerator(IDeviceEnumerator** enumerator) {
    return guarded([&]() -> int32_t {
        clearOut(enumerator);
        if (const auto fault = runtime_.faults().take("ISessionManagerInt::getDeviceEnumerator")) {
            return *fault;
        }
        if (enumerator == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        *enumerator = new DeviceEnumerator(runtime_.headsets().all(), runtime_.faults());
        return VEXIL_OK;
    });
}

int32_t SessionManagerInt::refreshDevices(int32_t /*mode*/) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISessionManagerInt::refreshDevices")) {
            return *fault;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        runtime_.headsets().countRefresh();
        return VEXIL_OK;
    });
}

int32_t SessionManagerInt::setActiveDevice(const wchar_t* path) {
    return guarded([&]() -> int32_t {
        if (const auto fault = runtime_.faults().take("ISessionManagerInt::setActiveDevice")) {
            return *fault;
        }
        if (path == nullptr) {
            return VEXIL_E_REFUSED;
        }
        if (!runtime_.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        return runtime_.headsets().setActive(path) ? VEXIL_OK : VEXIL_E_REFUSED;
    });
}

}  // namespace vexil
