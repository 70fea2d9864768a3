// The client's callbacks. They run on the client's threads and must return at once: each copies
// the record it is given, records a new call and queues events for the worker; none talks to
// the headset. Nothing is reported to the client and nothing escapes into it: every callback
// returns 0, and an error (such as a failed allocation) is caught and logged locally.
#include "calls/copyCallInfo.h"
#include "plugin/BQLColloqPlugin.h"
#include "plugin/NoThrowBoundary.h"

namespace {

using CallRecord = Accessory_CallInfo_v1_0_t;

// The common start of every call callback: a copy of the record, or nothing to do.
template <typename Body>
int onCallRecord(const char* function, CallRecord* call, Body&& body) {
    if (call == nullptr) {
        return 0;
    }
    return runWithoutEscaping(function, [&] {
        CallRecord copy = copyCallInfo(call);
        if (!BQLColloqPlugin::isPluginActive.load()) {
            return;
        }
        body(*BQLColloqPlugin::getInstance(), copy);
    });
}

}  // namespace

bool BQLColloqPlugin::trackCallId(int id) {
    bql::MutexLock guard(knownCallIdsLock);
    return knownCallIds.insert(id).second;
}

void BQLColloqPlugin::forgetCallId(int id) {
    bql::MutexLock guard(knownCallIdsLock);
    knownCallIds.erase(id);
}

void BQLColloqPlugin::recordCall(CallRecord& info, BQLColloqCallState state) {
    // Claiming the id first makes the test and the insert one step, so two client threads
    // reporting the same call cannot both enter it.
    if (!trackCallId(info.callId)) {
        return;
    }
    BQLColloqContact contact(&info);
    callQueue.Push(std::make_shared<BQLColloqCall>(&info, state, contact));
}

void BQLColloqPlugin::queueEvent(BQLColloqEventType type, int callId) {
    eventQueue.Push(std::make_shared<BQLColloqEvent>(type, callId));
}

int BQLColloqPlugin::onIncoming(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onIncoming", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        if (plugin.GetCallById(info.callId)) {
            return;  // a repeated notification of a tracked call renders nothing
        }
        plugin.recordCall(info, BQL_CALL_INCOMING);
        plugin.queueEvent(INCOMING_CALL_EVENT, info.callId);
    });
}

int BQLColloqPlugin::onCallWaiting(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onCallWaiting", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        plugin.recordCall(info, BQL_CALL_INCOMING);
        plugin.queueEvent(INCOMING_CALL_EVENT, info.callId);
    });
}

int BQLColloqPlugin::onRemoteAlerting(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onRemoteAlerting", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        plugin.recordCall(info, BQL_CALL_OUTGOING);
        plugin.queueEvent(OUTGOING_CALL_EVENT, info.callId);
    });
}

// A reorder is one more outgoing notification, not the end of the call.
int BQLColloqPlugin::onReorder(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onReorder", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        plugin.recordCall(info, BQL_CALL_OUTGOING);
        plugin.queueEvent(OUTGOING_CALL_EVENT, info.callId);
    });
}

int BQLColloqPlugin::onConnected(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onConnected", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        plugin.recordCall(info, BQL_CALL_CONNECTED);
        plugin.queueEvent(CONNECTED_CALL_EVENT, info.callId);
    });
}

int BQLColloqPlugin::onHold(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onHold", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        plugin.queueEvent(ON_HOLD_CALL_EVENT, info.callId);
    });
}

int BQLColloqPlugin::onBusy(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onBusy", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        plugin.queueEvent(TERMINATED_CALL_EVENT, info.callId);
    });
}

int BQLColloqPlugin::onOnHook(CallRecord* call, CallRecord**, int) {
    return onCallRecord("onOnHook", call, [](BQLColloqPlugin& plugin, CallRecord& info) {
        plugin.queueEvent(TERMINATED_CALL_EVENT, info.callId);
    });
}

int BQLColloqPlugin::onAudioMute() {
    return runWithoutEscaping("onAudioMute", [] {
        if (isPluginActive.load()) {
            getInstance()->queueEvent(MUTEON_CALL_EVENT, 0);
        }
    });
}

int BQLColloqPlugin::onAudioUnmute() {
    return runWithoutEscaping("onAudioUnmute", [] {
        if (isPluginActive.load()) {
            getInstance()->queueEvent(MUTEOFF_CALL_EVENT, 0);
        }
    });
}

// No isPluginActive test: this is how the plug-in becomes active.
int BQLColloqPlugin::onActiveDeviceChanged(Accessory_AccessoryType, const char* device, const char*) {
    return runWithoutEscaping("onActiveDeviceChanged", [device] { getInstance()->changeVexilActiveDevice(device); });
}

int BQLColloqPlugin::onOffHook(CallRecord*, CallRecord**, int) { return 0; }
int BQLColloqPlugin::onVolumeChanged(Accessory_AudioType, int) { return 0; }
int BQLColloqPlugin::setDeviceMicrophoneVolume(const char*, int) { return 0; }
int BQLColloqPlugin::setDeviceSpeakerVolume(const char*, int) { return 0; }
int BQLColloqPlugin::onPhoneRegistrationStatusChanged(Accessory_PhoneConnectionStatus) { return 0; }
int BQLColloqPlugin::notifySubscriberNumbers(Accessory_Subscriber_Info**, int) { return 0; }
