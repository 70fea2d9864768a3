#include "hostharness/ResponsePlan.h"

#include <utility>

namespace hostharness {

std::size_t ResponsePlan::indexOf(HostCall call) {
    return call == HostCall::GetLogger ? kCallControlSlots : static_cast<std::size_t>(call);
}

HarnessStatus ResponsePlan::setResult(HostCall call, int16_t result) {
    if (!isKnownHostCall(call)) {
        return HarnessStatus::UnknownSlot;
    }
    if (!hasConfigurableResult(call)) {
        return HarnessStatus::NoResult;
    }
    bql::MutexLock lock(mutex_);
    results_[indexOf(call)] = result;
    return HarnessStatus::Ok;
}

int16_t ResponsePlan::resultOf(HostCall call) const {
    if (!hasConfigurableResult(call)) {
        return 0;
    }
    bql::MutexLock lock(mutex_);
    return results_[indexOf(call)];
}

HarnessStatus ResponsePlan::setEntryPointResult(Accessory_APIVersion_t version, int16_t result) {
    bql::MutexLock lock(mutex_);
    if (version == kCallControlVersion) {
        callControlEntryResult_ = result;
    } else if (version == kLoggerVersion) {
        loggerEntryResult_ = result;
    } else {
        return HarnessStatus::UnknownSlot;
    }
    return HarnessStatus::Ok;
}

HarnessStatus ResponsePlan::entryPointResult(Accessory_APIVersion_t version, int16_t* result) const {
    if (result == nullptr) {
        return HarnessStatus::NullArgument;
    }
    bql::MutexLock lock(mutex_);
    if (version == kCallControlVersion) {
        *result = callControlEntryResult_;
    } else if (version == kLoggerVersion) {
        *result = loggerEntryResult_;
    } else {
        return HarnessStatus::UnknownSlot;
    }
    return HarnessStatus::Ok;
}

HarnessStatus ResponsePlan::setCalls(const std::vector<CallDescription>& calls) {
    std::vector<Accessory_CallInfo_v1_0_t> records(calls.size());
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const HarnessStatus status = buildCallInfo(calls[i], &records[i]);
        if (status != HarnessStatus::Ok) {
            return status;
        }
    }
    bql::MutexLock lock(mutex_);
    calls_ = std::move(records);
    return HarnessStatus::Ok;
}

std::vector<Accessory_CallInfo_v1_0_t> ResponsePlan::calls() const {
    bql::MutexLock lock(mutex_);
    return calls_;
}

void ResponsePlan::reset() {
    bql::MutexLock lock(mutex_);
    results_.fill(0);
    callControlEntryResult_ = 0;
    loggerEntryResult_ = 0;
    calls_.clear();
}

}  // namespace hostharness
