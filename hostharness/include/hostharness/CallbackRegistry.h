// The callback table a plug-in registered with the simulated client, and firing its callbacks
// the way the client does: from any thread, concurrently, until unregistration has returned.
// Thread-safe.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "bqlcommon/Mutex.h"
#include "colloq/AccessoryAPI.h"
#include "hostharness/CallDescription.h"
#include "hostharness/CallbackSlot.h"
#include "hostharness/HarnessStatus.h"

namespace hostharness {

// Arguments of a callback; each slot reads the fields it takes.
struct CallbackArgs {
    CallDescription call;                // call events (slots 4 to 12): the call concerned
    std::vector<CallDescription> calls;  // call events: the client's current calls (none: null list, count 0)
    int32_t code = 0;                    // onVolumeChanged audio type, onActiveDeviceChanged kind,
                                         // onPhoneRegistrationStatusChanged status
    int32_t volume = 0;                  // onVolumeChanged, setDeviceMicrophoneVolume, setDeviceSpeakerVolume
    std::string device;                  // onActiveDeviceChanged, setDevice*Volume
    std::string second;                  // onActiveDeviceChanged
};

class CallbackRegistry {
public:
    // Keeps a copy of the table's slots (the plug-in fills its table before registering it);
    // replaces a table registered before.
    void remember(const Accessory_CallControlCallback_v1_0_t* table) BQL_EXCLUDES(mutex_);
    // Forgets the table if it is the registered one, then returns once no callback fired on
    // another thread is still running, so that the plug-in is never called afterwards. False
    // when table is not the registered one.
    bool forget(const Accessory_CallControlCallback_v1_0_t* table) BQL_EXCLUDES(mutex_);
    // Forgets whatever is registered, waiting the same way.
    void forgetAll() BQL_EXCLUDES(mutex_);
    // Forgets the registered table if it lies in the shared object that contains
    // anySymbolOfLibrary (the library is about to be unloaded); true if it did.
    bool forgetIfInside(const void* anySymbolOfLibrary) BQL_EXCLUDES(mutex_);

    bool isRegistered() const BQL_EXCLUDES(mutex_);
    const Accessory_CallControlCallback_v1_0_t* registeredTable() const BQL_EXCLUDES(mutex_);

    // Calls the callback in slot with args built into fresh client records, from the calling
    // thread, without holding any lock; the callback's result goes to *result (may be null).
    // UnknownSlot / EmptySlot for slots without a callback, TextTooLong for call texts that do
    // not fit the record, NotRegistered, CallbackMissing for a null slot in the plug-in's table.
    HarnessStatus fire(CallbackSlot slot, const CallbackArgs& args, int* result = nullptr) BQL_EXCLUDES(mutex_);
    // fire() for a call event (slots 4 to 12) about one call, with no call list; UnknownSlot for
    // a slot that takes no call record.
    HarnessStatus fireCallEvent(CallbackSlot slot, const CallDescription& call, int* result = nullptr)
        BQL_EXCLUDES(mutex_);

private:
    void forgetLocked(bql::MutexLock& lock) BQL_REQUIRES(mutex_);
    void finishFiring() BQL_EXCLUDES(mutex_);

    mutable bql::Mutex mutex_;
    std::condition_variable settled_;
    const Accessory_CallControlCallback_v1_0_t* registered_ BQL_GUARDED_BY(mutex_) = nullptr;
    Accessory_CallControlCallback_v1_0_t slots_ BQL_GUARDED_BY(mutex_) = {};
    std::vector<std::thread::id> firing_ BQL_GUARDED_BY(mutex_);  // one entry per callback running
};

}  // namespace hostharness
