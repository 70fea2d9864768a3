#include "ClientStorm.h"

#include <array>
#include <chrono>
#include <random>

#include "NamedThread.h"
#include "hostharness/HostHarness.h"

namespace colloqvalidate {

namespace {

using hostharness::CallbackSlot;
using namespace std::chrono_literals;

// Events the client may have queued that the worker has not taken yet.
constexpr uint64_t kMaxBacklog = 256;
// The worker has stopped when it takes nothing for this long.
constexpr auto kStallTimeout = 30s;
// Call ids drawn at random, so that calls are tracked, rendered and ended again and again.
constexpr int32_t kHighestCallId = 16;

// The call callbacks come up most, the audio and device-independent ones less often.
constexpr std::array<CallbackSlot, 20> kSlots = {
    CallbackSlot::OnIncoming,      CallbackSlot::OnIncoming,       CallbackSlot::OnCallWaiting,
    CallbackSlot::OnRemoteAlerting, CallbackSlot::OnRemoteAlerting, CallbackSlot::OnReorder,
    CallbackSlot::OnConnected,     CallbackSlot::OnConnected,      CallbackSlot::OnHold,
    CallbackSlot::OnHold,          CallbackSlot::OnOnHook,         CallbackSlot::OnOnHook,
    CallbackSlot::OnBusy,          CallbackSlot::OnOffHook,        CallbackSlot::OnAudioMute,
    CallbackSlot::OnAudioUnmute,   CallbackSlot::OnVolumeChanged,  CallbackSlot::SetDeviceMicrophoneVolume,
    CallbackSlot::SetDeviceSpeakerVolume, CallbackSlot::OnPhoneRegistrationStatusChanged,
};

hostharness::CallbackArgs randomArgs(std::mt19937& random) {
    hostharness::CallbackArgs args;
    args.call.id = std::uniform_int_distribution<int32_t>(1, kHighestCallId)(random);
    args.call.state = std::uniform_int_distribution<int32_t>(0, 10)(random);
    args.call.conference = std::uniform_int_distribution<int32_t>(0, 5)(random) == 0 ? 1 : 0;
    args.call.number = "+4930" + std::to_string(std::uniform_int_distribution<int32_t>(100000, 999999)(random));
    args.call.name = "Caller " + std::to_string(args.call.id);
    args.code = std::uniform_int_distribution<int32_t>(0, 3)(random);
    args.volume = std::uniform_int_distribution<int32_t>(0, 100)(random);
    args.device = "AppleUSBAudioEngine:Brimquell:Model 5_1-X.2";
    return args;
}

}  // namespace

bool ClientStorm::start(int threads, uint32_t seed, std::string* error) {
    for (int i = 0; i < threads; ++i) {
        std::thread thread;
        const uint32_t threadSeed = seed * 1000u + static_cast<uint32_t>(i);
        if (!startNamedThread(thread, "client-" + std::to_string(i + 1), [this, threadSeed] { fire(threadSeed); },
                              error)) {
            return false;
        }
        threads_.push_back(std::move(thread));
    }
    return true;
}

void ClientStorm::join() {
    for (std::thread& thread : threads_) {
        thread.join();
    }
    threads_.clear();
}

void ClientStorm::fire(uint32_t seed) {
    std::mt19937 random(seed);
    hostharness::CallbackRegistry& callbacks = hostharness::HostHarness::instance().callbacks();
    std::uniform_int_distribution<std::size_t> pick(0, kSlots.size() - 1);
    while (!stop_.raised()) {
        if (!tally_.waitForBacklogBelow(kMaxBacklog, kStallTimeout)) {
            problems_.note({"every event the client produced was consumed",
                            "the worker took no event for " + std::to_string(kStallTimeout.count()) + " s with " +
                                std::to_string(tally_.counts().producedTotal() - tally_.counts().consumedTotal()) +
                                " queued"});
            return;
        }
        const CallbackSlot slot = kSlots[pick(random)];
        int result = 0;
        const hostharness::HarnessStatus status = callbacks.fire(slot, randomArgs(random), &result);
        if (status != hostharness::HarnessStatus::Ok) {
            problems_.note({"the callbacks stay registered", std::string(hostharness::callbackSlotName(slot)) +
                                                                 " could not be fired: " + hostharness::describe(status)});
            return;
        }
        tally_.noteFired(slot);
        fired_.fetch_add(1);
        if (result != 0) {
            problems_.note({"every callback returns 0",
                            std::string(hostharness::callbackSlotName(slot)) + " returned " + std::to_string(result)});
            return;
        }
    }
}

}  // namespace colloqvalidate
