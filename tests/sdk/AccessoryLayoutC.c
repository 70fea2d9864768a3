/*
 * Compiled as C: the client's header must give a C compiler the same layout as a C++ one.
 * The static assertions fail the build; the functions report the layout to the C++ tests.
 */
#include "AccessoryLayoutC.h"

#include "colloq/AccessoryAPI.h"

#define SLOT_SIZE sizeof(void (*)(void))
#define ASSERT_AT(type, member, offset) _Static_assert(offsetof(type, member) == (offset), #member " is at " #offset)
#define ASSERT_SLOT(type, member, slot) \
    _Static_assert(offsetof(type, member) == (slot)*SLOT_SIZE, #member " is slot " #slot)
#define ENTRY(type, member) \
    { #member, offsetof(type, member) }
#define COUNT(entries) (sizeof(entries) / sizeof((entries)[0]))

_Static_assert(sizeof(Accessory_CallInfo_v1_0_t) == 112, "call record is 112 bytes");
ASSERT_AT(Accessory_CallInfo_v1_0_t, callId, 0);
ASSERT_AT(Accessory_CallInfo_v1_0_t, reserved0, 4);
ASSERT_AT(Accessory_CallInfo_v1_0_t, callState, 8);
ASSERT_AT(Accessory_CallInfo_v1_0_t, conference, 12);
ASSERT_AT(Accessory_CallInfo_v1_0_t, number, 16);
ASSERT_AT(Accessory_CallInfo_v1_0_t, displayName, 49);
ASSERT_AT(Accessory_CallInfo_v1_0_t, opaque, 104);

_Static_assert(sizeof(Accessory_CallControlAPI_v1_0_t) == 26 * SLOT_SIZE, "call-control table has 26 slots");
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, getCalls, 0);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, makeCall, 3);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, answerCall, 4);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, endCall, 6);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, sendDtmf, 7);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, muteCall, 8);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, unmuteCall, 9);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, holdCall, 18);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, resumeCall, 19);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, activeDeviceChanged, 21);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, releaseActiveDevice, 22);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, registerAccessoryCallbacks, 23);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, unregisterAccessoryCallbacks, 24);
ASSERT_SLOT(Accessory_CallControlAPI_v1_0_t, rejectCall, 25);

_Static_assert(sizeof(Accessory_CallControlCallback_v1_0_t) == 23 * SLOT_SIZE, "callback table has 23 slots");
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onAudioMute, 0);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onAudioUnmute, 1);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onOffHook, 4);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onReorder, 5);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onBusy, 6);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onIncoming, 7);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onCallWaiting, 8);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onConnected, 9);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onHold, 10);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onOnHook, 11);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onRemoteAlerting, 12);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onVolumeChanged, 13);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onActiveDeviceChanged, 15);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, setDeviceMicrophoneVolume, 17);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, setDeviceSpeakerVolume, 18);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, onPhoneRegistrationStatusChanged, 19);
ASSERT_SLOT(Accessory_CallControlCallback_v1_0_t, notifySubscriberNumbers, 20);

_Static_assert(sizeof(Accessory_LoggerAPI_v1_0_t) == 2 * SLOT_SIZE, "logger table has 2 slots");
ASSERT_SLOT(Accessory_LoggerAPI_v1_0_t, getLogger, 0);
ASSERT_SLOT(Accessory_LoggerAPI_v1_0_t, log, 1);
_Static_assert(sizeof(ACCLogger_t) == 64, "logger record is 64 bytes");

static const SdkLayoutEntry kCallInfo[] = {
    ENTRY(Accessory_CallInfo_v1_0_t, callId),    ENTRY(Accessory_CallInfo_v1_0_t, reserved0),
    ENTRY(Accessory_CallInfo_v1_0_t, callState), ENTRY(Accessory_CallInfo_v1_0_t, conference),
    ENTRY(Accessory_CallInfo_v1_0_t, number),    ENTRY(Accessory_CallInfo_v1_0_t, displayName),
    ENTRY(Accessory_CallInfo_v1_0_t, opaque),
};

static const SdkLayoutEntry kCallControl[] = {
    ENTRY(Accessory_CallControlAPI_v1_0_t, getCalls),
    ENTRY(Accessory_CallControlAPI_v1_0_t, makeCall),
    ENTRY(Accessory_CallControlAPI_v1_0_t, answerCall),
    ENTRY(Accessory_CallControlAPI_v1_0_t, endCall),
    ENTRY(Accessory_CallControlAPI_v1_0_t, sendDtmf),
    ENTRY(Accessory_CallControlAPI_v1_0_t, muteCall),
    ENTRY(Accessory_CallControlAPI_v1_0_t, unmuteCall),
    ENTRY(Accessory_CallControlAPI_v1_0_t, holdCall),
    ENTRY(Accessory_CallControlAPI_v1_0_t, resumeCall),
    ENTRY(Accessory_CallControlAPI_v1_0_t, activeDeviceChanged),
    ENTRY(Accessory_CallControlAPI_v1_0_t, releaseActiveDevice),
    ENTRY(Accessory_CallControlAPI_v1_0_t, registerAccessoryCallbacks),
    ENTRY(Accessory_CallControlAPI_v1_0_t, unregisterAccessoryCallbacks),
    ENTRY(Accessory_CallControlAPI_v1_0_t, rejectCall),
};

static const SdkLayoutEntry kCallbacks[] = {
    ENTRY(Accessory_CallControlCallback_v1_0_t, onAudioMute),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onAudioUnmute),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onOffHook),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onReorder),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onBusy),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onIncoming),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onCallWaiting),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onConnected),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onHold),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onOnHook),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onRemoteAlerting),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onVolumeChanged),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onActiveDeviceChanged),
    ENTRY(Accessory_CallControlCallback_v1_0_t, setDeviceMicrophoneVolume),
    ENTRY(Accessory_CallControlCallback_v1_0_t, setDeviceSpeakerVolume),
    ENTRY(Accessory_CallControlCallback_v1_0_t, onPhoneRegistrationStatusChanged),
    ENTRY(Accessory_CallControlCallback_v1_0_t, notifySubscriberNumbers),
};

static const SdkLayoutEntry kLoggerApi[] = {
    ENTRY(Accessory_LoggerAPI_v1_0_t, getLogger),
    ENTRY(Accessory_LoggerAPI_v1_0_t, log),
};

SdkLayoutTable sdk_c_call_info_layout(void) {
    SdkLayoutTable table = {sizeof(Accessory_CallInfo_v1_0_t), kCallInfo, COUNT(kCallInfo)};
    return table;
}

SdkLayoutTable sdk_c_call_control_layout(void) {
    SdkLayoutTable table = {sizeof(Accessory_CallControlAPI_v1_0_t), kCallControl, COUNT(kCallControl)};
    return table;
}

SdkLayoutTable sdk_c_callback_layout(void) {
    SdkLayoutTable table = {sizeof(Accessory_CallControlCallback_v1_0_t), kCallbacks, COUNT(kCallbacks)};
    return table;
}

SdkLayoutTable sdk_c_logger_api_layout(void) {
    SdkLayoutTable table = {sizeof(Accessory_LoggerAPI_v1_0_t), kLoggerApi, COUNT(kLoggerApi)};
    return table;
}

size_t sdk_c_logger_record_size(void) { return sizeof(ACCLogger_t); }

uint32_t sdk_c_call_control_selector(void) { return ACCESSORY_API_CALL_CONTROL_V1_0; }

uint32_t sdk_c_logger_selector(void) { return ACCESSORY_API_LOGGER_V1_0; }

int16_t sdk_c_failure_status(void) { return ACCESSORY_STATUS_FAILURE; }
