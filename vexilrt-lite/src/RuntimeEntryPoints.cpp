// The runtime's five free functions, as a softphone finds them in the library.
#include "Export.h"
#include "Guarded.h"
#include "OutParam.h"
#include "Runtime.h"
#include "vexilrt/VexilRTSDKLite.h"

using vexil::Runtime;

namespace {

// The three getters share one shape: fault, argument, running, then the singleton.
template <class Interface, class Pick>
int32_t handOut(const char* faultName, Interface** out, Pick pick) {
    return vexil::guarded([&]() -> int32_t {
        vexil::clearOut(out);
        Runtime& runtime = Runtime::instance();
        if (const auto fault = runtime.faults().take(faultName)) {
            return *fault;
        }
        if (out == nullptr) {
            return VEXIL_E_INVALID_ARG;
        }
        if (!runtime.running()) {
            return VEXIL_E_NOT_INITIALIZED;
        }
        *out = pick(runtime);
        return VEXIL_OK;
    });
}

}  // namespace

extern "C" VEXIL_EXPORT int32_t InitVexilRuntime() {
    return vexil::guarded([]() -> int32_t { return Runtime::instance().start(); });
}

extern "C" VEXIL_EXPORT void ShutDownVexilRuntime() {
    vexil::guarded([]() -> int32_t {
        Runtime::instance().stop();
        return VEXIL_OK;
    });
}

extern "C" VEXIL_EXPORT int32_t getSessionManager(ISessionManager** manager) {
    return handOut("getSessionManager", manager,
                   [](Runtime& runtime) -> ISessionManager* { return &runtime.sessionManager(); });
}

extern "C" VEXIL_EXPORT int32_t getSessionManagerInt(ISessionManagerInt** manager) {
    return handOut("getSessionManagerInt", manager,
                   [](Runtime& runtime) -> ISessionManagerInt* { return &runtime.sessionManagerInt(); });
}

extern "C" VEXIL_EXPORT int32_t getDeviceManager(IDeviceManager** manager) {
    return handOut("getDeviceManager", manager,
                   [](Runtime& runtime) -> IDeviceManager* { return &runtime.deviceManager(); });
}
