// The 23 slots of the callback table a plug-in registers with the client.
#pragma once

#include <cstdint>

namespace hostharness {

enum class CallbackSlot : int32_t {
    OnAudioMute = 0,
    OnAudioUnmute = 1,
    Empty2 = 2,
    Empty3 = 3,
    OnOffHook = 4,
    OnReorder = 5,
    OnBusy = 6,
    OnIncoming = 7,
    OnCallWaiting = 8,
    OnConnected = 9,
    OnHold = 10,
    OnOnHook = 11,
    OnRemoteAlerting = 12,
    OnVolumeChanged = 13,
    Empty14 = 14,
    OnActiveDeviceChanged = 15,
    Empty16 = 16,
    SetDeviceMicrophoneVolume = 17,
    SetDeviceSpeakerVolume = 18,
    OnPhoneRegistrationStatusChanged = 19,
    NotifySubscriberNumbers = 20,
    Empty21 = 21,
    Empty22 = 22,
};

constexpr int32_t kCallbackSlots = 23;

bool isKnownCallbackSlot(CallbackSlot slot);
// Slots 2, 3, 14, 16, 21 and 22, which hold no callback.
bool isEmptyCallbackSlot(CallbackSlot slot);
// Slots 4 to 12, which take a call record, the list of calls and its length.
bool isCallEventSlot(CallbackSlot slot);

// The client's name of the callback ("onIncoming", "empty14"), or "unknown".
const char* callbackSlotName(CallbackSlot slot);

}  // namespace hostharness
