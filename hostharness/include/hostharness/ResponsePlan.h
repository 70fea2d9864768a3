// What the simulated client answers: the 16-bit result of each operation, the result of the
// entry point per table version, and the calls getCalls reports. Defaults: every result 0 (the
// client's success), no calls. Thread-safe.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "bqlcommon/Mutex.h"
#include "colloq/AccessoryAPI.h"
#include "hostharness/CallDescription.h"
#include "hostharness/HarnessStatus.h"
#include "hostharness/HostCall.h"

namespace hostharness {

// The entry point's two table versions.
constexpr Accessory_APIVersion_t kCallControlVersion = 0x10001u;
constexpr Accessory_APIVersion_t kLoggerVersion = 0x10002u;
// What the client answers for failure (the header's ACCESSORY_STATUS_FAILURE).
constexpr int16_t kClientFailure = -1;

class ResponsePlan {
public:
    // For operations with hasConfigurableResult(call); NoResult for the others, UnknownSlot for
    // values outside HostCall.
    HarnessStatus setResult(HostCall call, int16_t result) BQL_EXCLUDES(mutex_);
    // The configured result, 0 for operations without one.
    int16_t resultOf(HostCall call) const BQL_EXCLUDES(mutex_);

    // kClientFailure makes the entry point refuse that version without filling the table; any
    // other value is returned after filling it. UnknownSlot for other versions.
    HarnessStatus setEntryPointResult(Accessory_APIVersion_t version, int16_t result) BQL_EXCLUDES(mutex_);
    HarnessStatus entryPointResult(Accessory_APIVersion_t version, int16_t* result) const BQL_EXCLUDES(mutex_);

    // The calls getCalls copies out, in order. All are checked first: one that does not fit the
    // record gives TextTooLong and keeps the previous list.
    HarnessStatus setCalls(const std::vector<CallDescription>& calls) BQL_EXCLUDES(mutex_);
    std::vector<Accessory_CallInfo_v1_0_t> calls() const BQL_EXCLUDES(mutex_);

    void reset() BQL_EXCLUDES(mutex_);

private:
    static constexpr std::size_t kConfigurable = kCallControlSlots + 1;  // the slots, then getLogger
    static std::size_t indexOf(HostCall call);

    mutable bql::Mutex mutex_;
    std::array<int16_t, kConfigurable> results_ BQL_GUARDED_BY(mutex_) = {};
    int16_t callControlEntryResult_ BQL_GUARDED_BY(mutex_) = 0;
    int16_t loggerEntryResult_ BQL_GUARDED_BY(mutex_) = 0;
    std::vector<Accessory_CallInfo_v1_0_t> calls_ BQL_GUARDED_BY(mutex_);
};

}  // namespace hostharness
