// The records that travel over the hub pipe, built field by field. Every record starts zero-filled,
// so that fields a message does not use carry zeros. Null texts count as empty; texts longer than
// their field are cut to it (wide fields keep their terminator).
#pragma once

#include <cstdint>

#include "hubproxy/ColloqCallArgs.h"

// Plug-in to hub: a call message of any type, with deviceAction 0.
ColloqCallArgs BuildCallRecord(MessageType type, ColloqCallState state, int callId, const wchar_t* contactName,
                               const wchar_t* phoneNumber, const char* extraText, const char* dtmfKeys);

// Plug-in to hub: make the device with `productId` the active one.
ColloqCallArgs BuildSetActiveDeviceRequest(uint32_t productId);

// Plug-in to hub: report the active device.
ColloqCallArgs BuildGetActiveDeviceRequest();

// Hub to plug-in: a headset call event.
ColloqCallArgs BuildHeadsetEvent(ColloqCallState state, int callId, const wchar_t* devicePath, const char* extraText,
                                 const char* dtmfKeys);

// Hub to plug-in: place an outgoing call to `number`.
ColloqCallArgs BuildDialRequest(const wchar_t* number);

// Hub to plug-in: the active device is `devicePath`, or there is none when it is null.
ColloqCallArgs BuildActiveDeviceReport(const wchar_t* devicePath);
