/*
 * Control interface of the substitute Vexil runtime (libVexilRTSDKLite.so).
 *
 * The softphone side uses the runtime through its own headers (vexilrt/VexilRTSDKLite.h). This
 * header is the other side: what a test, a demo, a host simulator or a validator uses to plug
 * simulated headsets in and out, press their buttons, make operations fail on purpose and read
 * what the runtime saw. Plain C, callable from any thread; nothing here throws. Strings are
 * UTF-8 and NUL-terminated. Every function returns a VEXILCTL_* status; a refused call changes
 * nothing.
 *
 * How the runtime answers the softphone
 * -------------------------------------
 * Statuses are the VEXIL_* codes of vexilrt/Status.h. Unless an operation says otherwise:
 * - an armed fault (vexilctl_inject_fault) wins over every other check: the operation returns
 *   the chosen status, sets its out-pointer (when not null) to null or its int out to 0, and
 *   changes no state;
 * - then a null pointer argument gives VEXIL_E_INVALID_ARG (out-pointers set to null);
 * - then, before InitVexilRuntime() or after ShutDownVexilRuntime(), VEXIL_E_NOT_INITIALIZED;
 * - reserved placeholder positions always return VEXIL_E_NOT_SUPPORTED.
 *
 * InitVexilRuntime        0; idempotent. Starts the event thread "vexil-events". Called from the
 *                         event thread while the runtime is being shut down it returns
 *                         VEXIL_E_REFUSED (that thread cannot wait for its own end).
 * ShutDownVexilRuntime    drops the session and every subscriber, discards queued events, wakes
 *                         and joins the event thread; idempotent. Headsets, the command log,
 *                         the call states, the mute flag and the default softphone stay.
 *                         Called from the event thread it returns at once, and the runtime is
 *                         stopped when that delivery returns; InitVexilRuntime and
 *                         ShutDownVexilRuntime on other threads wait for that.
 * getSessionManager, getSessionManagerInt, getDeviceManager
 *                         0 and the runtime's singleton (never released).
 * ISessionManagerInt::registerSession(name, kind, out)
 *                         name must be one of VEXIL_SOFTPHONE_NAMES and kind
 *                         VEXIL_SESSION_KIND_SOFTPHONE, else VEXIL_E_INVALID_ARG; a second
 *                         session while one is registered: VEXIL_E_ALREADY_EXISTS. Plug-in ids
 *                         count up from VEXILCTL_FIRST_PLUGIN_ID; the status starts at 0 (unset).
 * ISessionManagerInt::getDeviceEnumerator
 *                         a snapshot of the headsets in the order they were added.
 * ISessionManagerInt::refreshDevices(mode)
 *                         0; counted (vexilctl_refresh_count).
 * ISessionManagerInt::setActiveDevice(path)
 *                         0, or VEXIL_E_REFUSED (-1) for a null path or one no headset has.
 * ISessionManager::unregisterSession(session)
 *                         VEXIL_E_NOT_FOUND unless it is the registered session's handle. Its
 *                         call subscribers are dropped (waiting for a delivery in progress).
 * ISessionManager::setPluginStatus(id, status)
 *                         status other than 2 or 5: VEXIL_E_INVALID_ARG; unknown id:
 *                         VEXIL_E_NOT_FOUND.
 * ISessionManager::registerCallback / ISession::registerCallback
 *                         a subscriber already registered: VEXIL_E_ALREADY_EXISTS.
 * ISessionManager::unregisterCallback / ISession::unregisterCallback
 *                         an unknown subscriber: VEXIL_E_NOT_FOUND. Returns only once no
 *                         delivery to that subscriber is in progress (from the event thread
 *                         itself it does not wait); it is never called afterwards.
 * ISessionManager::getSoftphoneDefaults
 *                         the runtime's ISoftphoneDefaults (never released). Its
 *                         setDefaultSoftphone(id) records the default; 0 clears it; a negative
 *                         id is VEXIL_E_INVALID_ARG, an id that is not the registered session's
 *                         VEXIL_E_NOT_FOUND.
 * ISession operations     on a handle whose session is no longer registered: VEXIL_E_NOT_FOUND.
 *                         getPluginId sets 0 when it fails. getCallCommand gives a new
 *                         ICallCommand (release it). getActiveDevice gives a new IDevice
 *                         reference, or VEXIL_E_NO_DEVICE and null when no headset is active.
 * ICallCommand 2..9       every command is recorded in the command log (also refused ones, with
 *                         the status returned). A null call: VEXIL_E_INVALID_ARG; the contact may
 *                         be null (logged as absent). With no registered session, or another
 *                         session than the one the command was taken from: VEXIL_E_NOT_FOUND.
 *                         On success the headset call state changes (VEXILCTL_CALL_*): incoming
 *                         -> ringing, outgoing -> outgoing, answered/resume/insert -> active,
 *                         hold -> held, terminate -> ended; setMute sets the mute flag.
 * IDevice::getDevicePath, getProductName (buffer, capacity)
 *                         copy with truncation, always terminated; null buffer or capacity <= 0:
 *                         VEXIL_E_INVALID_ARG; cut: VEXIL_E_BUFFER_TOO_SMALL. A device is a
 *                         snapshot: it answers even after its headset was unplugged.
 * IDevice::getHostCommand the device's own IHostCommand (not released); isFeatureSupported(18)
 *                         tells whether the headset has a display.
 * IDeviceManager::getDevices
 *                         a new IDeviceEnumeration whose count() is the number of headsets.
 *
 * Events reach subscribers only on the event thread, never inside the caller's operation, in
 * the order they were raised. Records are zeroed first and every text is terminated.
 * The active device is the first headset plugged in while none is active; unplugging the active
 * headset makes the one added after it active, else the first remaining one, else none.
 */
#ifndef VEXILCTL_VEXIL_CONTROL_H
#define VEXILCTL_VEXIL_CONTROL_H

#include <stdint.h>

#if defined(__GNUC__)
#define VEXILCTL_API __attribute__((visibility("default")))
#else
#define VEXILCTL_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Statuses of this interface. */
#define VEXILCTL_OK 0
#define VEXILCTL_E_INVALID_ARG 1       /* a null pointer, a negative or unknown number, bad UTF-8 */
#define VEXILCTL_E_TOO_LONG 2          /* a text longer than the field it goes into */
#define VEXILCTL_E_NOT_FOUND 3         /* no such headset, fault name, log entry or call */
#define VEXILCTL_E_ALREADY_EXISTS 4    /* a headset with that path is plugged in already */
#define VEXILCTL_E_NOT_RUNNING 5       /* the runtime is not initialised */
#define VEXILCTL_E_RUNNING 6           /* only allowed while the runtime is shut down */
#define VEXILCTL_E_NO_SESSION 7        /* no softphone session is registered */
#define VEXILCTL_E_NO_DEVICE 8         /* no headset is active */
#define VEXILCTL_E_TIMEOUT 9           /* events were still pending when the time ran out */
#define VEXILCTL_E_BUFFER_TOO_SMALL 10 /* the buffer got the empty string */
#define VEXILCTL_E_WRONG_THREAD 11     /* the event thread cannot wait for itself */
#define VEXILCTL_E_INTERNAL 12         /* out of memory or another unexpected failure */

/* Limits, counted as the runtime's event records count them (terminator included). */
#define VEXILCTL_PATH_CHARS 260         /* device path: at most 259 characters */
#define VEXILCTL_PRODUCT_NAME_CHARS 200 /* product name: at most 199 characters */
#define VEXILCTL_NUMBER_CHARS 128       /* dialled numbers: at most 127 characters each */
#define VEXILCTL_KEYS_BYTES 32          /* DTMF key text: at most 31 bytes */

/* Byte sizes of the UTF-8 texts this interface hands back (4 bytes a character at most). */
#define VEXILCTL_PATH_BYTES (4 * VEXILCTL_PATH_CHARS)
#define VEXILCTL_PRODUCT_NAME_BYTES (4 * VEXILCTL_PRODUCT_NAME_CHARS)
#define VEXILCTL_TEXT_BYTES 256 /* session name and contact texts; longer ones are cut */
#define VEXILCTL_FAULT_NAME_BYTES 64

/* The USB vendor id in the standard headset path. */
#define VEXILCTL_VENDOR_ID 0x2F0C

/* The first plug-in id the runtime gives a session in a fresh process or after vexilctl_reset;
 * later sessions count up, also across InitVexilRuntime/ShutDownVexilRuntime. */
#define VEXILCTL_FIRST_PLUGIN_ID 1001

/* Headset call states driven by the call commands. */
#define VEXILCTL_CALL_RINGING 1
#define VEXILCTL_CALL_OUTGOING 2
#define VEXILCTL_CALL_ACTIVE 3
#define VEXILCTL_CALL_HELD 4
#define VEXILCTL_CALL_ENDED 5

/* Command kinds of the command log: the ICallCommand position of each command. */
#define VEXILCTL_CMD_INCOMING_CALL 2
#define VEXILCTL_CMD_OUTGOING_CALL 3
#define VEXILCTL_CMD_TERMINATE_CALL 4
#define VEXILCTL_CMD_ANSWERED_CALL 5
#define VEXILCTL_CMD_HOLD_CALL 6
#define VEXILCTL_CMD_RESUME_CALL 7
#define VEXILCTL_CMD_INSERT_CALL 8
#define VEXILCTL_CMD_SET_MUTE 9

/* The command log keeps the latest entries up to this many; older ones are dropped. */
#define VEXILCTL_COMMAND_LOG_CAPACITY 4096

/* Arms a fault for every call until cleared. */
#define VEXILCTL_FAULT_ALWAYS (-1)

typedef struct VexilCtlHeadset {
    char path[VEXILCTL_PATH_BYTES];
    char productName[VEXILCTL_PRODUCT_NAME_BYTES];
    uint16_t productId;
    int32_t hasDisplay; /* 1 or 0 */
    int32_t isActive;   /* 1 for the runtime's active device */
} VexilCtlHeadset;

typedef struct VexilCtlSession {
    int32_t registered;          /* 0: no session; every other field is then 0 or empty */
    int32_t pluginId;
    int32_t status;              /* 0 unset, 2 active, 5 inactive */
    int32_t kind;
    int32_t callSubscriberCount; /* ICallEvents subscribers of the session */
    char name[VEXILCTL_TEXT_BYTES];
} VexilCtlSession;

/* One call command as the runtime read it through the softphone's ICall and IContact. */
typedef struct VexilCtlCommand {
    int32_t command;    /* VEXILCTL_CMD_* */
    int32_t status;     /* what the runtime returned */
    int32_t hasCall;    /* 0 when the call pointer was null */
    int32_t callId;     /* ICall::getID() */
    int32_t hasContact; /* 0 when the contact pointer was null or the command takes none */
    char contactName[VEXILCTL_TEXT_BYTES];  /* IContact::getName() */
    char contactPhone[VEXILCTL_TEXT_BYTES]; /* IContact::getPhone() */
    int32_t arg1;       /* the int arguments of incomingCall (both) and outgoingCall (first) */
    int32_t arg2;
    int32_t mute;       /* the flag of setMute */
} VexilCtlCommand;

/* A short English text for a VEXILCTL_* status; never null. */
VEXILCTL_API const char* vexilctl_status_text(int32_t status);

/* Writes "hid/vid_2f0c&pid_<4 lower-case hex>/<serial>". The serial is non-empty, without '/'. */
VEXILCTL_API int32_t vexilctl_make_headset_path(uint16_t productId, const char* serial,
                                                char* buffer, int32_t capacity);

/* Plugs a headset in. The path must be non-empty and unique; hasDisplay is 0 or 1. Raises
 * DeviceStateEventArgs state 1 to every ISessionManagerEvents subscriber (while running).
 * Headsets are physical: they stay across InitVexilRuntime/ShutDownVexilRuntime. */
VEXILCTL_API int32_t vexilctl_add_headset(const char* path, const char* productName,
                                          uint16_t productId, int32_t hasDisplay);

/* Unplugs a headset; raises DeviceStateEventArgs state 2 (while running). */
VEXILCTL_API int32_t vexilctl_remove_headset(const char* path);

VEXILCTL_API int32_t vexilctl_headset_count(int32_t* count);
VEXILCTL_API int32_t vexilctl_headset_at(int32_t index, VexilCtlHeadset* headset);

/* A button press on a headset: CallStateEventArgs {callId, code, path, keys, keys} to the
 * session's ICallEvents::OnCallStateChanged. keys null or "" sends "255" (no key). The path
 * must be a plugged-in headset's, or "" for a report without a device. */
VEXILCTL_API int32_t vexilctl_press_button(const char* path, int32_t code, int32_t callId,
                                           const char* keys);

/* A number dialled on a headset: CallRequestEventArgs to ICallEvents::OnCallRequest. The
 * alternate number may be null (sent empty). Path rules as for vexilctl_press_button. */
VEXILCTL_API int32_t vexilctl_dial(const char* path, const char* number,
                                   const char* alternateNumber);

/* A call-state report of the session manager: CallStateEventArgs {-1, code, path, "255", "255"}
 * to every ISessionManagerEvents::OnCallStateChanged. Path rules as for vexilctl_press_button. */
VEXILCTL_API int32_t vexilctl_report_call_state(const char* path, int32_t code);

/* Waits until every event raised so far has been delivered. VEXILCTL_E_TIMEOUT when time ran
 * out; VEXILCTL_E_WRONG_THREAD on the event thread. */
VEXILCTL_API int32_t vexilctl_wait_idle(int32_t timeoutMs);

/* Makes the named operation return `status` (non-zero) for its next `count` calls, or always
 * with VEXILCTL_FAULT_ALWAYS. Names: "getSessionManager", "getSessionManagerInt",
 * "getDeviceManager" and "Interface::operation" for every interface operation that returns a
 * status, e.g. "ISessionManagerInt::registerSession", "ICallCommand::holdCall". InitVexilRuntime
 * and ShutDownVexilRuntime are not among them. Unknown names: VEXILCTL_E_NOT_FOUND. Arming a
 * name again replaces its fault. */
VEXILCTL_API int32_t vexilctl_inject_fault(const char* name, int32_t status, int32_t count);
VEXILCTL_API int32_t vexilctl_clear_faults(void);

/* The names vexilctl_inject_fault accepts. */
VEXILCTL_API int32_t vexilctl_fault_name_count(int32_t* count);
VEXILCTL_API int32_t vexilctl_fault_name_at(int32_t index, char* buffer, int32_t capacity);

/* The command log, oldest entry first. */
VEXILCTL_API int32_t vexilctl_command_count(int32_t* count);
VEXILCTL_API int32_t vexilctl_command_at(int32_t index, VexilCtlCommand* command);
VEXILCTL_API int32_t vexilctl_clear_commands(void);

/* What the runtime holds. */
VEXILCTL_API int32_t vexilctl_get_session(VexilCtlSession* session);
VEXILCTL_API int32_t vexilctl_manager_subscriber_count(int32_t* count);
VEXILCTL_API int32_t vexilctl_get_active_device(char* buffer, int32_t capacity); /* NO_DEVICE: "" */
VEXILCTL_API int32_t vexilctl_get_default_softphone(int32_t* pluginId);          /* 0 = none */
VEXILCTL_API int32_t vexilctl_get_call_state(int32_t callId, int32_t* state);    /* VEXILCTL_CALL_* */
VEXILCTL_API int32_t vexilctl_get_mute(int32_t* muted);
VEXILCTL_API int32_t vexilctl_refresh_count(int32_t* count);
VEXILCTL_API int32_t vexilctl_is_running(int32_t* running);

/* Back to a pristine runtime: no headsets, faults, log entries, call states or default, mute
 * off, plug-in ids from VEXILCTL_FIRST_PLUGIN_ID again. Only while shut down, else
 * VEXILCTL_E_RUNNING. */
VEXILCTL_API int32_t vexilctl_reset(void);

#ifdef __cplusplus
}
#endif

#endif /* VEXILCTL_VEXIL_CONTROL_H */
