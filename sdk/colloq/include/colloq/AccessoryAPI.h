/*
 * The Colloq client's accessory interface, version 1.0: the entry point a plug-in receives in
 * initialize(), the tables it fetches through it, the callback table it registers and the
 * client's call record. Plain C, usable from C and C++; every slot uses the C calling convention.
 */
#ifndef COLLOQ_ACCESSORY_API_H
#define COLLOQ_ACCESSORY_API_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define ACCESSORY_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
extern "C" {
#else
#define ACCESSORY_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif

/* API version selectors passed to the entry point. */
typedef uint32_t Accessory_APIVersion_t;
#define ACCESSORY_API_CALL_CONTROL_V1_0 0x10001u
#define ACCESSORY_API_LOGGER_V1_0 0x10002u

/* The client's own enumerations travel as 32-bit integers. */
typedef int32_t Accessory_LogMsg_Severity;
typedef int32_t Accessory_AccessoryType;
typedef int32_t Accessory_AudioType;
typedef int32_t Accessory_PhoneConnectionStatus;

/* Owned by the client; a plug-in never looks inside. */
typedef struct Accessory_Subscriber_Info Accessory_Subscriber_Info;

/* Status every client operation reports on failure (16-bit, all bits set). */
#define ACCESSORY_STATUS_FAILURE (-1)

/* Fills the table selected by version; -1 means failure. */
typedef int16_t (*accessoryAPIEntryPoint_t)(Accessory_APIVersion_t version, void* table);

/* Slots the client keeps for itself; a plug-in never calls them. */
typedef void (*Accessory_UnusedSlot_t)(void);

/* The client's description of one call: exactly 112 bytes, host byte order. */
typedef struct Accessory_CallInfo_v1_0_t {
    int32_t callId;           /* unique among the client's current calls */
    int32_t reserved0;        /* not interpreted, copied */
    int32_t callState;        /* the client's numbering, 0 to 10 */
    int32_t conference;       /* non-zero when part of a conference */
    char number[33];          /* NUL-terminated remote number */
    char displayName[55];     /* NUL-terminated remote name */
    unsigned char opaque[8];  /* copied verbatim */
} Accessory_CallInfo_v1_0_t;

ACCESSORY_STATIC_ASSERT(sizeof(Accessory_CallInfo_v1_0_t) == 112, "call record is 112 bytes");
ACCESSORY_STATIC_ASSERT(offsetof(Accessory_CallInfo_v1_0_t, callId) == 0, "callId at 0");
ACCESSORY_STATIC_ASSERT(offsetof(Accessory_CallInfo_v1_0_t, reserved0) == 4, "reserved0 at 4");
ACCESSORY_STATIC_ASSERT(offsetof(Accessory_CallInfo_v1_0_t, callState) == 8, "callState at 8");
ACCESSORY_STATIC_ASSERT(offsetof(Accessory_CallInfo_v1_0_t, conference) == 12, "conference at 12");
ACCESSORY_STATIC_ASSERT(offsetof(Accessory_CallInfo_v1_0_t, number) == 16, "number at 16");
ACCESSORY_STATIC_ASSERT(offsetof(Accessory_CallInfo_v1_0_t, displayName) == 49, "displayName at 49");
ACCESSORY_STATIC_ASSERT(offsetof(Accessory_CallInfo_v1_0_t, opaque) == 104, "opaque at 104");

/* Called by the client on any of its threads; the records are valid only during the call. */
typedef int (*Accessory_CallEvent_t)(Accessory_CallInfo_v1_0_t* call,
                                     Accessory_CallInfo_v1_0_t** calls, int count);

/* The plug-in's callback table, 23 pointer-sized slots, registered through slot 23 below. */
typedef struct Accessory_CallControlCallback_v1_0_t {
    int (*onAudioMute)(void);                                     /* 0 */
    int (*onAudioUnmute)(void);                                   /* 1 */
    Accessory_UnusedSlot_t empty2;                                /* 2 */
    Accessory_UnusedSlot_t empty3;                                /* 3 */
    Accessory_CallEvent_t onOffHook;                              /* 4 */
    Accessory_CallEvent_t onReorder;                              /* 5 */
    Accessory_CallEvent_t onBusy;                                 /* 6 */
    Accessory_CallEvent_t onIncoming;                             /* 7 */
    Accessory_CallEvent_t onCallWaiting;                          /* 8 */
    Accessory_CallEvent_t onConnected;                            /* 9 */
    Accessory_CallEvent_t onHold;                                 /* 10 */
    Accessory_CallEvent_t onOnHook;                               /* 11 */
    Accessory_CallEvent_t onRemoteAlerting;                       /* 12 */
    int (*onVolumeChanged)(Accessory_AudioType type, int volume); /* 13 */
    Accessory_UnusedSlot_t empty14;                               /* 14 */
    int (*onActiveDeviceChanged)(Accessory_AccessoryType kind, const char* device,
                                 const char* second);             /* 15 */
    Accessory_UnusedSlot_t empty16;                               /* 16 */
    int (*setDeviceMicrophoneVolume)(const char* device, int volume); /* 17 */
    int (*setDeviceSpeakerVolume)(const char* device, int volume);    /* 18 */
    int (*onPhoneRegistrationStatusChanged)(Accessory_PhoneConnectionStatus status); /* 19 */
    int (*notifySubscriberNumbers)(Accessory_Subscriber_Info** numbers, int count);  /* 20 */
    Accessory_UnusedSlot_t empty21;                               /* 21 */
    Accessory_UnusedSlot_t empty22;                               /* 22 */
} Accessory_CallControlCallback_v1_0_t;

#define ACCESSORY_CALLBACK_SLOTS 23
ACCESSORY_STATIC_ASSERT(sizeof(Accessory_CallControlCallback_v1_0_t) ==
                            ACCESSORY_CALLBACK_SLOTS * sizeof(void (*)(void)),
                        "callback table has 23 slots");

/* The client's call-control table, 26 pointer-sized slots (version 0x10001). */
typedef struct Accessory_CallControlAPI_v1_0_t {
    int (*getCalls)(Accessory_CallInfo_v1_0_t** calls, int max);          /* 0 */
    Accessory_UnusedSlot_t unused1;                                       /* 1 */
    Accessory_UnusedSlot_t unused2;                                       /* 2 */
    int16_t (*makeCall)(const char* device, const char* number);          /* 3 */
    int16_t (*answerCall)(const char* device);                            /* 4 */
    Accessory_UnusedSlot_t unused5;                                       /* 5 */
    int16_t (*endCall)(const char* device);                               /* 6 */
    int16_t (*sendDtmf)(const char* device, char key);                    /* 7 */
    int16_t (*muteCall)(const char* device);                              /* 8 */
    int16_t (*unmuteCall)(const char* device);                            /* 9 */
    Accessory_UnusedSlot_t unused10;                                      /* 10 */
    Accessory_UnusedSlot_t unused11;                                      /* 11 */
    Accessory_UnusedSlot_t unused12;                                      /* 12 */
    Accessory_UnusedSlot_t unused13;                                      /* 13 */
    Accessory_UnusedSlot_t unused14;                                      /* 14 */
    Accessory_UnusedSlot_t unused15;                                      /* 15 */
    Accessory_UnusedSlot_t unused16;                                      /* 16 */
    Accessory_UnusedSlot_t unused17;                                      /* 17 */
    int16_t (*holdCall)(const char* device);                              /* 18 */
    int16_t (*resumeCall)(const char* device);                            /* 19 */
    Accessory_UnusedSlot_t unused20;                                      /* 20 */
    int16_t (*activeDeviceChanged)(const char* device);                   /* 21 */
    int16_t (*releaseActiveDevice)(const char* device);                   /* 22 */
    int16_t (*registerAccessoryCallbacks)(Accessory_CallControlCallback_v1_0_t* table);   /* 23 */
    int16_t (*unregisterAccessoryCallbacks)(Accessory_CallControlCallback_v1_0_t* table); /* 24 */
    int16_t (*rejectCall)(const char* device);                            /* 25 */
} Accessory_CallControlAPI_v1_0_t;

#define ACCESSORY_CALL_CONTROL_SLOTS 26
ACCESSORY_STATIC_ASSERT(sizeof(Accessory_CallControlAPI_v1_0_t) ==
                            ACCESSORY_CALL_CONTROL_SLOTS * sizeof(void (*)(void)),
                        "call-control table has 26 slots");

/* Opaque logger record the client fills in getLogger; only its address is passed back. */
typedef struct ACCLogger_t {
    unsigned char opaque[64];
} ACCLogger_t;
ACCESSORY_STATIC_ASSERT(sizeof(ACCLogger_t) == 64, "logger record is 64 bytes");

/* The client's logger table (version 0x10002). */
typedef struct Accessory_LoggerAPI_v1_0_t {
    int16_t (*getLogger)(const char* name, ACCLogger_t* logger);                     /* 0 */
    void (*log)(ACCLogger_t* logger, Accessory_LogMsg_Severity severity, const char* text); /* 1 */
} Accessory_LoggerAPI_v1_0_t;

/* Severities a plug-in passes to the client's log. */
#define ACCESSORY_LOG_FAILURE 1
#define ACCESSORY_LOG_MISSING_TABLE 2
#define ACCESSORY_LOG_MILESTONE 4
#define ACCESSORY_LOG_TRACE 5

/* The plug-in's two exported entry points; both return 0. */
typedef int (*Accessory_PluginInitialize_t)(accessoryAPIEntryPoint_t entry);
typedef int (*Accessory_PluginUninitialize_t)(void);

#ifdef __cplusplus
}
#endif

#endif /* COLLOQ_ACCESSORY_API_H */
