// The simulated Colloq client a plug-in talks to: its entry point with the call-control and
// logger tables behind it, the journal of every call the plug-in makes, the results the client
// answers with, the callback table the plug-in registered, and the loggers it handed out.
//
// The client's tables are plain C function pointers that carry no user data, so there is one
// harness per process: every slot reaches the same state through instance(). Each part guards
// its own state with its own mutex; the plug-in may call the slots from any of its threads while
// a test configures, fires callbacks and waits. Tests call reset() between cases.
#pragma once

#include "colloq/AccessoryAPI.h"
#include "hostharness/CallbackRegistry.h"
#include "hostharness/Journal.h"
#include "hostharness/LoggerRegistry.h"
#include "hostharness/ResponsePlan.h"

namespace hostharness {

class HostHarness {
public:
    static HostHarness& instance();

    // The function a host hands to the plug-in's initialize: version 0x10001 fills an
    // Accessory_CallControlAPI_v1_0_t, 0x10002 an Accessory_LoggerAPI_v1_0_t; any other
    // version, a null table or a configured failure answers -1.
    accessoryAPIEntryPoint_t entryPoint() const;

    Journal& journal() { return journal_; }
    ResponsePlan& responses() { return responses_; }
    CallbackRegistry& callbacks() { return callbacks_; }
    LoggerRegistry& loggers() { return loggers_; }

    // Back to a fresh client: no registered callbacks (after any running callback has returned),
    // no loggers, default results, no calls, an empty journal.
    void reset();

    HostHarness(const HostHarness&) = delete;
    HostHarness& operator=(const HostHarness&) = delete;

private:
    HostHarness() = default;
    ~HostHarness() = default;

    Journal journal_;
    ResponsePlan responses_;
    CallbackRegistry callbacks_;
    LoggerRegistry loggers_;
};

}  // namespace hostharness
