// The simulated client's C functions. Each records its call in the journal and answers with
// the configured result; none lets an exception escape into the plug-in. A call is journalled
// after its effect (a table filled, callbacks kept or dropped), so that a test that saw it in the
// journal also sees its effect. Results are read before journalling, so that a test that reacts
// to one call by changing a result never changes the answer to that call.
#include "ClientEntryPoint.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "hostharness/HostHarness.h"

namespace hostharness {

namespace {

HostHarness& host() { return HostHarness::instance(); }

template <typename Body>
int16_t guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return kClientFailure;
    }
}

template <typename Body>
void guardedVoid(Body&& body) noexcept {
    try {
        body();
    } catch (...) {
        // A lost journal entry is all a failed allocation costs; the plug-in must not see it.
    }
}

RecordedCall entryFor(HostCall call) {
    RecordedCall entry;
    entry.call = call;
    return entry;
}

int16_t refuse(RecordedCall entry) {
    entry.nullArgument = true;
    host().journal().append(std::move(entry));
    return kClientFailure;
}

int16_t deviceOperation(HostCall call, const char* device) {
    return guarded([&] {
        RecordedCall entry = entryFor(call);
        if (device == nullptr) {
            return refuse(std::move(entry));
        }
        entry.device = device;
        const int16_t result = host().responses().resultOf(call);
        host().journal().append(std::move(entry));
        return result;
    });
}

void unusedSlot(HostCall call) {
    guardedVoid([call] { host().journal().append(entryFor(call)); });
}

int copyCalls(Accessory_CallInfo_v1_0_t** calls, int max) {
    RecordedCall entry = entryFor(HostCall::GetCalls);
    entry.max = max;
    if (calls == nullptr) {
        entry.nullArgument = true;
        host().journal().append(std::move(entry));
        return 0;
    }
    const std::vector<Accessory_CallInfo_v1_0_t> configured = host().responses().calls();
    const std::size_t count = std::min(configured.size(), static_cast<std::size_t>(std::max(max, 0)));
    if (std::any_of(calls, calls + count, [](const Accessory_CallInfo_v1_0_t* record) { return record == nullptr; })) {
        entry.nullArgument = true;
        host().journal().append(std::move(entry));
        return 0;
    }
    for (std::size_t i = 0; i < count; ++i) {
        *calls[i] = configured[i];
    }
    host().journal().append(std::move(entry));
    return static_cast<int>(count);
}

}  // namespace

}  // namespace hostharness

using hostharness::host;
using hostharness::HostCall;
using hostharness::kClientFailure;
using hostharness::RecordedCall;

extern "C" {

static int hostharness_getCalls(Accessory_CallInfo_v1_0_t** calls, int max) {
    try {
        return hostharness::copyCalls(calls, max);
    } catch (...) {
        return 0;
    }
}

static int16_t hostharness_makeCall(const char* device, const char* number) {
    return hostharness::guarded([&] {
        RecordedCall entry = hostharness::entryFor(HostCall::MakeCall);
        if (device == nullptr || number == nullptr) {
            return hostharness::refuse(std::move(entry));
        }
        entry.device = device;
        entry.number = number;
        const int16_t result = host().responses().resultOf(HostCall::MakeCall);
        host().journal().append(std::move(entry));
        return result;
    });
}

static int16_t hostharness_sendDtmf(const char* device, char key) {
    return hostharness::guarded([&] {
        RecordedCall entry = hostharness::entryFor(HostCall::SendDtmf);
        entry.key = key;
        if (device == nullptr) {
            return hostharness::refuse(std::move(entry));
        }
        entry.device = device;
        const int16_t result = host().responses().resultOf(HostCall::SendDtmf);
        host().journal().append(std::move(entry));
        return result;
    });
}

static int16_t hostharness_answerCall(const char* device) {
    return hostharness::deviceOperation(HostCall::AnswerCall, device);
}
static int16_t hostharness_endCall(const char* device) {
    return hostharness::deviceOperation(HostCall::EndCall, device);
}
static int16_t hostharness_muteCall(const char* device) {
    return hostharness::deviceOperation(HostCall::MuteCall, device);
}
static int16_t hostharness_unmuteCall(const char* device) {
    return hostharness::deviceOperation(HostCall::UnmuteCall, device);
}
static int16_t hostharness_holdCall(const char* device) {
    return hostharness::deviceOperation(HostCall::HoldCall, device);
}
static int16_t hostharness_resumeCall(const char* device) {
    return hostharness::deviceOperation(HostCall::ResumeCall, device);
}
static int16_t hostharness_rejectCall(const char* device) {
    return hostharness::deviceOperation(HostCall::RejectCall, device);
}
static int16_t hostharness_activeDeviceChanged(const char* device) {
    return hostharness::deviceOperation(HostCall::ActiveDeviceChanged, device);
}
static int16_t hostharness_releaseActiveDevice(const char* device) {
    return hostharness::deviceOperation(HostCall::ReleaseActiveDevice, device);
}

static int16_t hostharness_registerAccessoryCallbacks(Accessory_CallControlCallback_v1_0_t* table) {
    return hostharness::guarded([&] {
        RecordedCall entry = hostharness::entryFor(HostCall::RegisterAccessoryCallbacks);
        entry.table = table;
        if (table == nullptr) {
            return hostharness::refuse(std::move(entry));
        }
        const int16_t result = host().responses().resultOf(HostCall::RegisterAccessoryCallbacks);
        if (result != kClientFailure) {
            host().callbacks().remember(table);
        }
        host().journal().append(std::move(entry));
        return result;
    });
}

static int16_t hostharness_unregisterAccessoryCallbacks(Accessory_CallControlCallback_v1_0_t* table) {
    return hostharness::guarded([&] {
        RecordedCall entry = hostharness::entryFor(HostCall::UnregisterAccessoryCallbacks);
        entry.table = table;
        if (table == nullptr) {
            return hostharness::refuse(std::move(entry));
        }
        const int16_t result = host().responses().resultOf(HostCall::UnregisterAccessoryCallbacks);
        const bool wasRegistered = host().callbacks().forget(table);
        host().journal().append(std::move(entry));
        return wasRegistered ? result : kClientFailure;
    });
}

static void hostharness_unused1(void) { hostharness::unusedSlot(HostCall::Unused1); }
static void hostharness_unused2(void) { hostharness::unusedSlot(HostCall::Unused2); }
static void hostharness_unused5(void) { hostharness::unusedSlot(HostCall::Unused5); }
static void hostharness_unused10(void) { hostharness::unusedSlot(HostCall::Unused10); }
static void hostharness_unused11(void) { hostharness::unusedSlot(HostCall::Unused11); }
static void hostharness_unused12(void) { hostharness::unusedSlot(HostCall::Unused12); }
static void hostharness_unused13(void) { hostharness::unusedSlot(HostCall::Unused13); }
static void hostharness_unused14(void) { hostharness::unusedSlot(HostCall::Unused14); }
static void hostharness_unused15(void) { hostharness::unusedSlot(HostCall::Unused15); }
static void hostharness_unused16(void) { hostharness::unusedSlot(HostCall::Unused16); }
static void hostharness_unused17(void) { hostharness::unusedSlot(HostCall::Unused17); }
static void hostharness_unused20(void) { hostharness::unusedSlot(HostCall::Unused20); }

static int16_t hostharness_getLogger(const char* name, ACCLogger_t* logger) {
    return hostharness::guarded([&] {
        RecordedCall entry = hostharness::entryFor(HostCall::GetLogger);
        if (name == nullptr || logger == nullptr) {
            return hostharness::refuse(std::move(entry));
        }
        entry.loggerName = name;
        const int16_t result = host().responses().resultOf(HostCall::GetLogger);
        if (result != kClientFailure) {
            host().loggers().issue(name, logger);
        }
        host().journal().append(std::move(entry));
        return result;
    });
}

static void hostharness_log(ACCLogger_t* logger, Accessory_LogMsg_Severity severity, const char* text) {
    hostharness::guardedVoid([&] {
        RecordedCall entry = hostharness::entryFor(HostCall::Log);
        entry.severity = severity;
        entry.loggerName = host().loggers().nameOf(logger).value_or(std::string());
        entry.nullArgument = logger == nullptr || text == nullptr;
        if (text != nullptr) {
            entry.text = text;
        }
        host().journal().append(std::move(entry));
    });
}

static const Accessory_CallControlAPI_v1_0_t kCallControlTable = {
    hostharness_getCalls,
    hostharness_unused1,
    hostharness_unused2,
    hostharness_makeCall,
    hostharness_answerCall,
    hostharness_unused5,
    hostharness_endCall,
    hostharness_sendDtmf,
    hostharness_muteCall,
    hostharness_unmuteCall,
    hostharness_unused10,
    hostharness_unused11,
    hostharness_unused12,
    hostharness_unused13,
    hostharness_unused14,
    hostharness_unused15,
    hostharness_unused16,
    hostharness_unused17,
    hostharness_holdCall,
    hostharness_resumeCall,
    hostharness_unused20,
    hostharness_activeDeviceChanged,
    hostharness_releaseActiveDevice,
    hostharness_registerAccessoryCallbacks,
    hostharness_unregisterAccessoryCallbacks,
    hostharness_rejectCall,
};

static const Accessory_LoggerAPI_v1_0_t kLoggerTable = {hostharness_getLogger, hostharness_log};

static int16_t hostharness_entryPoint(Accessory_APIVersion_t version, void* table) {
    return hostharness::guarded([&] {
        RecordedCall entry = hostharness::entryFor(HostCall::EntryPoint);
        entry.version = version;
        entry.table = table;
        if (table == nullptr) {
            return hostharness::refuse(std::move(entry));
        }
        int16_t result = kClientFailure;
        if (host().responses().entryPointResult(version, &result) != hostharness::HarnessStatus::Ok) {
            result = kClientFailure;
        } else if (result != kClientFailure && version == hostharness::kCallControlVersion) {
            *static_cast<Accessory_CallControlAPI_v1_0_t*>(table) = kCallControlTable;
        } else if (result != kClientFailure) {
            *static_cast<Accessory_LoggerAPI_v1_0_t*>(table) = kLoggerTable;
        }
        host().journal().append(std::move(entry));
        return result;
    });
}

}  // extern "C"

namespace hostharness {

accessoryAPIEntryPoint_t clientEntryPoint() { return hostharness_entryPoint; }

}  // namespace hostharness
