#include "hostharness/CallbackRegistry.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace hostharness {

namespace {

using RawSlots = std::array<void (*)(), kCallbackSlots>;
static_assert(sizeof(RawSlots) == sizeof(Accessory_CallControlCallback_v1_0_t), "23 pointer-sized slots");

bool slotIsFilled(const Accessory_CallControlCallback_v1_0_t& table, CallbackSlot slot) {
    RawSlots raw{};
    std::memcpy(raw.data(), &table, sizeof(table));
    return raw[static_cast<std::size_t>(slot)] != nullptr;
}

// The records a call event passes, built before anything is called.
struct CallEventRecords {
    Accessory_CallInfo_v1_0_t call{};
    std::vector<Accessory_CallInfo_v1_0_t> calls;
    std::vector<Accessory_CallInfo_v1_0_t*> pointers;

    HarnessStatus build(const CallbackArgs& args) {
        HarnessStatus status = buildCallInfo(args.call, &call);
        calls.resize(args.calls.size());
        for (std::size_t i = 0; status == HarnessStatus::Ok && i < args.calls.size(); ++i) {
            status = buildCallInfo(args.calls[i], &calls[i]);
        }
        for (Accessory_CallInfo_v1_0_t& record : calls) {
            pointers.push_back(&record);
        }
        return status;
    }
    Accessory_CallInfo_v1_0_t** list() { return pointers.empty() ? nullptr : pointers.data(); }
    int count() const { return static_cast<int>(pointers.size()); }
};

int invoke(const Accessory_CallControlCallback_v1_0_t& table, CallbackSlot slot, const CallbackArgs& args,
           CallEventRecords& records) {
    switch (slot) {
        case CallbackSlot::OnAudioMute:
            return table.onAudioMute();
        case CallbackSlot::OnAudioUnmute:
            return table.onAudioUnmute();
        case CallbackSlot::OnOffHook:
            return table.onOffHook(&records.call, records.list(), records.count());
        case CallbackSlot::OnReorder:
            return table.onReorder(&records.call, records.list(), records.count());
        case CallbackSlot::OnBusy:
            return table.onBusy(&records.call, records.list(), records.count());
        case CallbackSlot::OnIncoming:
            return table.onIncoming(&records.call, records.list(), records.count());
        case CallbackSlot::OnCallWaiting:
            return table.onCallWaiting(&records.call, records.list(), records.count());
        case CallbackSlot::OnConnected:
            return table.onConnected(&records.call, records.list(), records.count());
        case CallbackSlot::OnHold:
            return table.onHold(&records.call, records.list(), records.count());
        case CallbackSlot::OnOnHook:
            return table.onOnHook(&records.call, records.list(), records.count());
        case CallbackSlot::OnRemoteAlerting:
            return table.onRemoteAlerting(&records.call, records.list(), records.count());
        case CallbackSlot::OnVolumeChanged:
            return table.onVolumeChanged(args.code, args.volume);
        case CallbackSlot::OnActiveDeviceChanged:
            return table.onActiveDeviceChanged(args.code, args.device.c_str(), args.second.c_str());
        case CallbackSlot::SetDeviceMicrophoneVolume:
            return table.setDeviceMicrophoneVolume(args.device.c_str(), args.volume);
        case CallbackSlot::SetDeviceSpeakerVolume:
            return table.setDeviceSpeakerVolume(args.device.c_str(), args.volume);
        case CallbackSlot::OnPhoneRegistrationStatusChanged:
            return table.onPhoneRegistrationStatusChanged(args.code);
        case CallbackSlot::NotifySubscriberNumbers:
            return table.notifySubscriberNumbers(nullptr, 0);
        default:
            return 0;  // empty slots never get here
    }
}

}  // namespace

void CallbackRegistry::remember(const Accessory_CallControlCallback_v1_0_t* table) {
    if (table == nullptr) {
        return;
    }
    bql::MutexLock lock(mutex_);
    registered_ = table;
    slots_ = *table;
}

bool CallbackRegistry::forget(const Accessory_CallControlCallback_v1_0_t* table) {
    bql::MutexLock lock(mutex_);
    if (table == nullptr || table != registered_) {
        return false;
    }
    forgetLocked(lock);
    return true;
}

void CallbackRegistry::forgetAll() {
    bql::MutexLock lock(mutex_);
    forgetLocked(lock);
}

bool CallbackRegistry::forgetIfInside(const void* anySymbolOfLibrary) {
    Dl_info library{};
    if (anySymbolOfLibrary == nullptr || dladdr(anySymbolOfLibrary, &library) == 0) {
        return false;
    }
    bql::MutexLock lock(mutex_);
    Dl_info table{};
    if (registered_ == nullptr || dladdr(registered_, &table) == 0 || table.dli_fbase != library.dli_fbase) {
        return false;
    }
    forgetLocked(lock);
    return true;
}

void CallbackRegistry::forgetLocked(bql::MutexLock& lock) {
    registered_ = nullptr;
    slots_ = {};
    // A callback running on this very thread (the plug-in unregistering from inside one) is not
    // waited for: it cannot finish before we return.
    const std::thread::id self = std::this_thread::get_id();
    while (std::any_of(firing_.begin(), firing_.end(), [self](std::thread::id id) { return id != self; })) {
        lock.wait(settled_);
    }
}

bool CallbackRegistry::isRegistered() const {
    bql::MutexLock lock(mutex_);
    return registered_ != nullptr;
}

const Accessory_CallControlCallback_v1_0_t* CallbackRegistry::registeredTable() const {
    bql::MutexLock lock(mutex_);
    return registered_;
}

HarnessStatus CallbackRegistry::fire(CallbackSlot slot, const CallbackArgs& args, int* result) {
    if (!isKnownCallbackSlot(slot)) {
        return HarnessStatus::UnknownSlot;
    }
    if (isEmptyCallbackSlot(slot)) {
        return HarnessStatus::EmptySlot;
    }
    CallEventRecords records;
    if (isCallEventSlot(slot)) {
        const HarnessStatus built = records.build(args);
        if (built != HarnessStatus::Ok) {
            return built;
        }
    }
    Accessory_CallControlCallback_v1_0_t table{};
    {
        bql::MutexLock lock(mutex_);
        if (registered_ == nullptr) {
            return HarnessStatus::NotRegistered;
        }
        if (!slotIsFilled(slots_, slot)) {
            return HarnessStatus::CallbackMissing;
        }
        table = slots_;
        firing_.push_back(std::this_thread::get_id());
    }
    struct Finish {
        CallbackRegistry* registry;
        ~Finish() { registry->finishFiring(); }
    } finish{this};
    const int answer = invoke(table, slot, args, records);
    if (result != nullptr) {
        *result = answer;
    }
    return HarnessStatus::Ok;
}

HarnessStatus CallbackRegistry::fireCallEvent(CallbackSlot slot, const CallDescription& call, int* result) {
    if (isKnownCallbackSlot(slot) && !isEmptyCallbackSlot(slot) && !isCallEventSlot(slot)) {
        return HarnessStatus::UnknownSlot;
    }
    CallbackArgs args;
    args.call = call;
    return fire(slot, args, result);
}

void CallbackRegistry::finishFiring() {
    {
        bql::MutexLock lock(mutex_);
        const auto mine = std::find(firing_.begin(), firing_.end(), std::this_thread::get_id());
        if (mine != firing_.end()) {
            firing_.erase(mine);
        }
    }
    settled_.notify_all();
}

}  // namespace hostharness
