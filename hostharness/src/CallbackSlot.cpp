#include "hostharness/CallbackSlot.h"

namespace hostharness {

namespace {

const char* const kNames[kCallbackSlots] = {
    "onAudioMute",
    "onAudioUnmute",
    "empty2",
    "empty3",
    "onOffHook",
    "onReorder",
    "onBusy",
    "onIncoming",
    "onCallWaiting",
    "onConnected",
    "onHold",
    "onOnHook",
    "onRemoteAlerting",
    "onVolumeChanged",
    "empty14",
    "onActiveDeviceChanged",
    "empty16",
    "setDeviceMicrophoneVolume",
    "setDeviceSpeakerVolume",
    "onPhoneRegistrationStatusChanged",
    "notifySubscriberNumbers",
    "empty21",
    "empty22",
};

int32_t indexOf(CallbackSlot slot) { return static_cast<int32_t>(slot); }

}  // namespace

bool isKnownCallbackSlot(CallbackSlot slot) { return indexOf(slot) >= 0 && indexOf(slot) < kCallbackSlots; }

bool isEmptyCallbackSlot(CallbackSlot slot) {
    switch (slot) {
        case CallbackSlot::Empty2:
        case CallbackSlot::Empty3:
        case CallbackSlot::Empty14:
        case CallbackSlot::Empty16:
        case CallbackSlot::Empty21:
        case CallbackSlot::Empty22:
            return true;
        default:
            return false;
    }
}

bool isCallEventSlot(CallbackSlot slot) {
    return indexOf(slot) >= indexOf(CallbackSlot::OnOffHook) &&
           indexOf(slot) <= indexOf(CallbackSlot::OnRemoteAlerting);
}

const char* callbackSlotName(CallbackSlot slot) {
    return isKnownCallbackSlot(slot) ? kNames[indexOf(slot)] : "unknown";
}

}  // namespace hostharness
