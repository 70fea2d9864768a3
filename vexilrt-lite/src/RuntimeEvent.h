// An event waiting for the event thread: the record to hand out and whose subscribers get it.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "vexilrt/Events.h"

namespace vexil {

// To the ISessionManagerEvents subscribers of the runtime run `generation`.
struct DeviceStateEvent {
    int32_t generation;
    DeviceStateEventArgs args;
};
struct ManagerCallStateEvent {
    int32_t generation;
    CallStateEventArgs args;
};

// To the ICallEvents subscribers of the session `pluginId`.
struct SessionCallStateEvent {
    int32_t pluginId;
    CallStateEventArgs args;
};
struct SessionCallRequestEvent {
    int32_t pluginId;
    CallRequestEventArgs args;
};

using RuntimeEvent =
    std::variant<DeviceStateEvent, ManagerCallStateEvent, SessionCallStateEvent, SessionCallRequestEvent>;

// Records zeroed first, every text terminated; texts have been checked to fit.
DeviceStateEventArgs makeDeviceStateArgs(int32_t state, const std::wstring& path);
CallStateEventArgs makeCallStateArgs(int32_t callId, int32_t code, const std::wstring& path,
                                     const std::string& keys, const std::string& keys2);
CallRequestEventArgs makeCallRequestArgs(const std::wstring& number, const std::wstring& alternate,
                                         const std::wstring& path);

}  // namespace vexil
