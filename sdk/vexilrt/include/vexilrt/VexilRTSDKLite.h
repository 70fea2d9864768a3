// The Vexil device runtime: entry functions and everything they hand out.
#pragma once

#include <cstdint>

#include "vexilrt/CallInterfaces.h"
#include "vexilrt/Events.h"
#include "vexilrt/RuntimeInterfaces.h"
#include "vexilrt/Status.h"

// Softphone product names a session registers under; a softphone uses its own entry only.
constexpr const wchar_t* VEXIL_SOFTPHONE_COLLOQ = L"Veltra Colloq";
constexpr const wchar_t* const VEXIL_SOFTPHONE_NAMES[] = {
    VEXIL_SOFTPHONE_COLLOQ,
    L"Veltra Desk Phone",
    L"Generic SIP Softphone",
};

// Session kind a softphone plug-in registers with.
constexpr int32_t VEXIL_SESSION_KIND_SOFTPHONE = 3100;

extern "C" {
int32_t InitVexilRuntime();
void ShutDownVexilRuntime();
int32_t getSessionManager(ISessionManager** manager);
int32_t getSessionManagerInt(ISessionManagerInt** manager);
int32_t getDeviceManager(IDeviceManager** manager);
}
