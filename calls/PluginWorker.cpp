// The worker: takes one event at a time off the event queue and drives the current handler.
// Every headset operation happens on this thread, so handlers never see two at once.
#include <exception>

#include <boost/thread/thread.hpp>

#include "bqlutil/LogWriter.h"
#include "platform/ThreadName.h"
#include "plugin/BQLColloqPlugin.h"

namespace {

constexpr const char* kWorkerFunction = "void BQLColloqPlugin::pluginThread()";
// A newly attached device is given this long to settle before it is made active.
constexpr auto kAttachSettleTime = boost::chrono::seconds(1);

}  // namespace

void BQLColloqPlugin::pluginThread() {
    platform::nameCurrentThread("bql-worker");
    // Nothing may escape a thread body: an error ends the worker with one local log line.
    try {
        EventPtr event;
        for (;;) {
            eventQueue.WaitAndGet(event);
            if (!handleEvent(event)) {
                return;
            }
            event.reset();
        }
    } catch (const boost::thread_interrupted&) {
        LogWriter_error("worker interrupted", kWorkerFunction, "<>");
    } catch (const std::exception& error) {
        LogWriter_error(error.what(), kWorkerFunction, "<>");
    } catch (...) {
        LogWriter_error("unknown exception", kWorkerFunction, "<>");
    }
}

bool BQLColloqPlugin::handleEvent(const EventPtr& event) {
    switch (event->type) {
        case STOP_PLUGIN_EVENT:
            TerminateAllCalls();
            WriteLog(ACCESSORY_LOG_TRACE, "Stopping BQLColloqPlugin::pluginThread()...");
            return false;
        case OUTGOING_CALL_EVENT:
            renderOutgoingCall(event->callId);
            return true;
        case INCOMING_CALL_EVENT:
            renderIncomingCall(event->callId);
            return true;
        case CONNECTED_CALL_EVENT:
            renderConnectedCall(event->callId);
            return true;
        case TERMINATED_CALL_EVENT:
            renderTerminatedCall(event->callId);
            return true;
        case MUTEON_CALL_EVENT:
            WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: MUTEON_CALL_EVENT");
            selector->performMuteCall(true);
            setIsMuted(true);
            return true;
        case MUTEOFF_CALL_EVENT:
            WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: MUTEOFF_CALL_EVENT");
            selector->performMuteCall(false);
            setIsMuted(false);
            return true;
        case VEXIL_CALL_EVENT:
            routeHeadsetEvent(event);
            return true;
        case ON_HOLD_CALL_EVENT:
            renderHeldCall(event->callId);
            return true;
        case BQL_COLLOQ_MAKE_CALL_EVENT:
            return placeDialledCall(*event);
        case ATTACH_DEVICE:
            WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: ATTACH_DEVICE");
            boost::this_thread::sleep_for(kAttachSettleTime);
            selector->setActiveDevice(getActiveDevicePid().c_str());
            return true;
        default:  // 10 and anything outside 1 to 12
            return true;
    }
}

void BQLColloqPlugin::renderOutgoingCall(int callId) {
    WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: OUTGOING_CALL_EVENT");
    const CallPtr call = GetCallById(callId);
    if (!call) {
        return;
    }
    WriteLog(ACCESSORY_LOG_TRACE, "Outgoing Call Info: CallID = %d, CallState = %d", call->getID(),
             call->getState());
    if (call->getState() == BQL_CALL_OUTGOING) {
        WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() Render outgoing call");
        const auto contact = call->getContact();
        selector->performOutgoingCall(call.get(), contact.get());
    }
}

void BQLColloqPlugin::renderIncomingCall(int callId) {
    WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: INCOMING_CALL_EVENT");
    const CallPtr call = GetCallById(callId);
    if (!call) {
        return;
    }
    WriteLog(ACCESSORY_LOG_TRACE, "Incoming Call Info: CallID = %d, CallState = %d", call->getID(),
             call->getState());
    if (call->getState() == BQL_CALL_INCOMING) {
        WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() render incoming call");
        const auto contact = call->getContact();
        selector->performIncomingCall(call.get(), contact.get());
    }
}

void BQLColloqPlugin::renderConnectedCall(int callId) {
    WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: CONNECTED_CALL_EVENT");
    const CallPtr call = GetCallById(callId);
    if (!call) {
        return;
    }
    WriteLog(ACCESSORY_LOG_TRACE, "Connected Call Info: CallID = %d, CallState = %d", call->getID(),
             call->getState());
    // The headset is told the call is not on it before, and besides, the state step below.
    if (!isActiveDeviceBrimquell()) {
        selector->performTerminateCall(call.get());
    }
    switch (call->getState()) {
        case BQL_CALL_OUTGOING:  // the far end answered
            call->setState(BQL_CALL_CONNECTED);
            break;
        case BQL_CALL_INCOMING:
            WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() render answered call");
            selector->performAnsweredCall(call.get());
            call->setState(BQL_CALL_CONNECTED);
            break;
        case BQL_CALL_CONNECTED: {
            WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() render connected call");
            const auto contact = call->getContact();
            selector->performInsertCall(call.get(), contact.get());
            break;
        }
        case BQL_CALL_HELD:
            WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() render resume call");
            selector->performResumeCall(call.get());
            call->setState(BQL_CALL_CONNECTED);
            break;
        default:
            break;
    }
}

void BQLColloqPlugin::renderTerminatedCall(int callId) {
    WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: TERMINATED_CALL_EVENT");
    CallPtr call = GetCallById(callId);
    if (!call) {
        return;
    }
    static const std::string kTerminatedLine =
        "Terminated Call Info: CallID = %d, CallState = %d." + std::string(30, ' ') + "Render terminate call.";
    WriteLog(ACCESSORY_LOG_TRACE, kTerminatedLine.c_str(), call->getID(), call->getState());
    selector->performTerminateCall(call.get());
    callQueue.Remove(call);
    forgetCallId(call->getID());
    setIsMuted(false);
}

void BQLColloqPlugin::renderHeldCall(int callId) {
    WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: ON_HOLD_CALL_EVENT");
    const CallPtr call = GetCallById(callId);
    if (!call || call->getState() == BQL_CALL_TERMINATE_PENDING || call->getState() == BQL_CALL_HELD) {
        return;
    }
    WriteLog(ACCESSORY_LOG_TRACE, "Held Call Info: CallID = %d, CallState = %d", call->getID(),
             call->getState());
    selector->performHoldCall(call.get());
    call->setState(BQL_CALL_HELD);
}

void BQLColloqPlugin::routeHeadsetEvent(const EventPtr& event) {
    WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: VEXIL_CALL_EVENT");
    const CallPtr call = GetCallById(event->callId);
    if (call) {
        WriteLog(ACCESSORY_LOG_TRACE, "into pluginThread() case: VEXIL_CALL_EVENT call is found, Start processing");
        selector->ProcessVexilEvent(event);
    } else if (event->callId == BQL_NO_CALL_ID) {
        WriteLog(ACCESSORY_LOG_TRACE,
                 "into pluginThread() case: VEXIL_CALL_EVENT, Start processing which is not related to a call");
        selector->ProcessVexilEvent(event);
    }
    // Otherwise the headset spoke of a call no longer tracked: dropped.
}

bool BQLColloqPlugin::placeDialledCall(const BQLColloqEvent& event) {
    Accessory_CallControlAPI_v1_0_t* api = callControlAPI.load();
    if (api == nullptr) {
        // Without the client's interface nothing the worker does can reach the client.
        WriteLog(ACCESSORY_LOG_MISSING_TABLE,
                 "processVexilEvent(EventPtr comeEvent): Failed to get Accessory Provider API!");
        return false;
    }
    if (event.value.empty()) {
        return true;
    }
    WriteLog(ACCESSORY_LOG_TRACE, "BQL_COLLOQ_MAKE_CALL_EVENT put outbound call");
    api->makeCall(getActiveDevicePath().c_str(), event.value.c_str());
    return true;
}
