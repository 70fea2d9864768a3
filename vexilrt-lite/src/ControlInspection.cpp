// Control functions that read what the runtime holds and what it was told.
#include <cstring>

#include "ControlSupport.h"
#include "Runtime.h"
#include "WideText.h"

using vexil::controlGuarded;
using vexil::Runtime;

extern "C" int32_t vexilctl_command_count(int32_t* count) {
    return controlGuarded([&]() -> int32_t {
        if (count == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *count = static_cast<int32_t>(Runtime::instance().commands().count());
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_command_at(int32_t index, VexilCtlCommand* command) {
    return controlGuarded([&]() -> int32_t {
        if (index < 0 || command == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        const auto entry = Runtime::instance().commands().at(static_cast<std::size_t>(index));
        if (!entry) {
            return VEXILCTL_E_NOT_FOUND;
        }
        *command = *entry;
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_clear_commands(void) {
    return controlGuarded([]() -> int32_t {
        Runtime::instance().commands().clear();
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_get_session(VexilCtlSession* session) {
    return controlGuarded([&]() -> int32_t {
        if (session == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        Runtime& runtime = Runtime::instance();
        const auto record = runtime.sessions().current();
        std::memset(session, 0, sizeof *session);
        if (record) {
            session->registered = 1;
            session->pluginId = record->pluginId;
            session->status = record->status;
            session->kind = record->kind;
            session->callSubscriberCount = static_cast<int32_t>(runtime.callSubscribers().size());
            vexil::copyUtf8Truncated(vexil::toUtf8(record->name), session->name, sizeof session->name);
        }
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_manager_subscriber_count(int32_t* count) {
    return controlGuarded([&]() -> int32_t {
        if (count == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *count = static_cast<int32_t>(Runtime::instance().managerSubscribers().size());
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_get_default_softphone(int32_t* pluginId) {
    return controlGuarded([&]() -> int32_t {
        if (pluginId == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *pluginId = Runtime::instance().softphoneDefaults().defaultSoftphone();
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_get_call_state(int32_t callId, int32_t* state) {
    return controlGuarded([&]() -> int32_t {
        if (state == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        const auto found = Runtime::instance().callStates().get(callId);
        if (!found) {
            return VEXILCTL_E_NOT_FOUND;
        }
        *state = static_cast<int32_t>(*found);
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_get_mute(int32_t* muted) {
    return controlGuarded([&]() -> int32_t {
        if (muted == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *muted = Runtime::instance().callStates().muted() ? 1 : 0;
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_refresh_count(int32_t* count) {
    return controlGuarded([&]() -> int32_t {
        if (count == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *count = Runtime::instance().headsets().refreshCount();
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_is_running(int32_t* running) {
    return controlGuarded([&]() -> int32_t {
        if (running == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *running = Runtime::instance().running() ? 1 : 0;
        return VEXILCTL_OK;
    });
}
