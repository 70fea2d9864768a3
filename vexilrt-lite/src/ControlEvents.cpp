// Control functions that act on a headset as its user would (buttons, dialling) or as the
// runtime itself reports, and the wait for the event thread to catch up.
#include <chrono>
#include <string>

#include "ControlSupport.h"
#include "Runtime.h"

using vexil::controlGuarded;
using vexil::Runtime;

namespace {

// The session the runtime's call events go to, or 0.
int32_t registeredPluginId(Runtime& runtime) {
    const auto session = runtime.sessions().current();
    return session ? session->pluginId : 0;
}

// Raises the event that `makeEvent` builds for that session.
template <class MakeEvent>
int32_t raiseForSession(MakeEvent makeEvent) {
    Runtime& runtime = Runtime::instance();
    if (!runtime.running()) {
        return VEXILCTL_E_NOT_RUNNING;
    }
    const int32_t pluginId = registeredPluginId(runtime);
    if (pluginId == 0) {
        return VEXILCTL_E_NO_SESSION;
    }
    return runtime.raise(makeEvent(pluginId)) ? VEXILCTL_OK : VEXILCTL_E_NOT_RUNNING;
}

int32_t readKeys(const char* keys, std::string& out) {
    if (keys == nullptr || keys[0] == '\0') {
        out = VEXIL_NO_DTMF_KEY;
        return VEXILCTL_OK;
    }
    std::wstring checked;
    const int32_t status = vexil::readText(keys, VEXILCTL_KEYS_BYTES - 1, checked);
    if (status != VEXILCTL_OK) {
        return status;
    }
    out = keys;
    return out.size() > VEXILCTL_KEYS_BYTES - 1 ? VEXILCTL_E_TOO_LONG : VEXILCTL_OK;
}

}  // namespace

extern "C" int32_t vexilctl_press_button(const char* path, int32_t code, int32_t callId, const char* keys) {
    return controlGuarded([&]() -> int32_t {
        std::wstring devicePath;
        std::string keyText;
        int32_t status = vexil::readEventDevicePath(path, devicePath);
        if (status == VEXILCTL_OK) {
            status = readKeys(keys, keyText);
        }
        if (status != VEXILCTL_OK) {
            return status;
        }
        return raiseForSession([&](int32_t pluginId) {
            return vexil::SessionCallStateEvent{pluginId,
                                                vexil::makeCallStateArgs(callId, code, devicePath, keyText, keyText)};
        });
    });
}

extern "C" int32_t vexilctl_dial(const char* path, const char* number, const char* alternateNumber) {
    return controlGuarded([&]() -> int32_t {
        std::wstring devicePath;
        std::wstring dialled;
        std::wstring alternate;
        int32_t status = vexil::readEventDevicePath(path, devicePath);
        if (status == VEXILCTL_OK) {
            status = vexil::readText(number, VEXILCTL_NUMBER_CHARS - 1, dialled);
        }
        if (status == VEXILCTL_OK && alternateNumber != nullptr) {
            status = vexil::readText(alternateNumber, VEXILCTL_NUMBER_CHARS - 1, alternate);
        }
        if (status != VEXILCTL_OK) {
            return status;
        }
        return raiseForSession([&](int32_t pluginId) {
            return vexil::SessionCallRequestEvent{pluginId, vexil::makeCallRequestArgs(dialled, alternate, devicePath)};
        });
    });
}

extern "C" int32_t vexilctl_report_call_state(const char* path, int32_t code) {
    return controlGuarded([&]() -> int32_t {
        std::wstring devicePath;
        const int32_t status = vexil::readEventDevicePath(path, devicePath);
        if (status != VEXILCTL_OK) {
            return status;
        }
        Runtime& runtime = Runtime::instance();
        if (!runtime.running()) {
            return VEXILCTL_E_NOT_RUNNING;
        }
        const bool raised = runtime.raise(vexil::ManagerCallStateEvent{
            runtime.generation(),
            vexil::makeCallStateArgs(-1, code, devicePath, VEXIL_NO_DTMF_KEY, VEXIL_NO_DTMF_KEY)});
        return raised ? VEXILCTL_OK : VEXILCTL_E_NOT_RUNNING;
    });
}

extern "C" int32_t vexilctl_wait_idle(int32_t timeoutMs) {
    return controlGuarded([&]() -> int32_t {
        if (timeoutMs < 0) {
            return VEXILCTL_E_INVALID_ARG;
        }
        vexil::EventDispatcher& dispatcher = Runtime::instance().dispatcher();
        if (dispatcher.onEventThread()) {
            return VEXILCTL_E_WRONG_THREAD;
        }
        return dispatcher.waitIdle(std::chrono::milliseconds(timeoutMs)) ? VEXILCTL_OK : VEXILCTL_E_TIMEOUT;
    });
}
