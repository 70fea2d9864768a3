// Arbitrary call records from the client: each input is a series of 113-byte steps, a selector
// byte that picks a callback and a 112-byte record as the client would hand it over (any ids and
// states, texts without terminators). Each record lies in a block of exactly its size, so that a
// read past it is caught. The worker then renders the events through the direct handler into
// the substitute runtime; the call list is emptied after each input, so inputs do not build on
// each other.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "PluginUnderFuzz.h"
#include "plugin/BQLColloqPlugin.h"

namespace {

constexpr std::size_t kRecordSize = sizeof(Accessory_CallInfo_v1_0_t);
constexpr std::size_t kStepSize = 1 + kRecordSize;

fuzzsupport::PluginUnderFuzz* pluginUnderFuzz = nullptr;

void fire(const Accessory_CallControlCallback_v1_0_t& callbacks, uint8_t selector, const uint8_t* bytes) {
    const auto record = std::make_unique<Accessory_CallInfo_v1_0_t>();
    std::memcpy(record.get(), bytes, kRecordSize);
    Accessory_CallInfo_v1_0_t* all[] = {record.get()};
    const Accessory_CallEvent_t callEvents[] = {
        callbacks.onIncoming, callbacks.onCallWaiting, callbacks.onRemoteAlerting,
        callbacks.onReorder,  callbacks.onConnected,   callbacks.onHold,
        callbacks.onBusy,     callbacks.onOnHook,      callbacks.onOffHook,
    };
    constexpr std::size_t kCallEvents = sizeof callEvents / sizeof callEvents[0];
    const std::size_t pick = selector % (kCallEvents + 2);
    if (pick < kCallEvents) {
        callEvents[pick](record.get(), all, 1);
    } else if (pick == kCallEvents) {
        callbacks.onAudioMute();
    } else {
        callbacks.onAudioUnmute();
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    pluginUnderFuzz = &fuzzsupport::PluginUnderFuzz::start(fuzzsupport::HeadsetSide::Direct);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const Accessory_CallControlCallback_v1_0_t& callbacks = pluginUnderFuzz->callbacks();
    for (std::size_t offset = 0; offset + kStepSize <= size; offset += kStepSize) {
        fire(callbacks, data[offset], data + offset + 1);
    }
    pluginUnderFuzz->drainWorker();
    pluginUnderFuzz->plugin().removeCalls();
    return 0;
}
