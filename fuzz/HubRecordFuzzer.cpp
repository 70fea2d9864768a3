// Arbitrary blocks from the hub: each input is cut into blocks of one record's size (the last
// block may be shorter, and is then rejected by the endpoint) and sent to the plug-in's hub port.
// They go through the endpoint's receive path, the hub handler's notifyPluginAboutEvent, the
// worker and the hub handler's ProcessVexilEvent into the test host. Two calls are tracked, so
// that headset events about calls 1 and 2 reach the handler as well as those about no call (-1).
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "PluginUnderFuzz.h"
#include "hubproxy/ColloqCallArgs.h"

namespace {

fuzzsupport::PluginUnderFuzz* pluginUnderFuzz = nullptr;

void reportCall(const Accessory_CallEvent_t callback, int32_t id, int32_t clientState) {
    Accessory_CallInfo_v1_0_t record{};
    record.callId = id;
    record.callState = clientState;
    callback(&record, nullptr, 0);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    pluginUnderFuzz = &fuzzsupport::PluginUnderFuzz::start(fuzzsupport::HeadsetSide::Hub);
    const Accessory_CallControlCallback_v1_0_t& callbacks = pluginUnderFuzz->callbacks();
    reportCall(callbacks.onIncoming, 1, 7);
    reportCall(callbacks.onConnected, 1, 9);
    reportCall(callbacks.onIncoming, 2, 7);
    pluginUnderFuzz->drainWorker();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    constexpr std::size_t kRecordSize = sizeof(ColloqCallArgs);
    std::size_t offset = 0;
    do {
        const std::size_t length = std::min(kRecordSize, size - offset);
        pluginUnderFuzz->sendToHubPort(data + offset, length);
        offset += length;
    } while (offset < size);
    pluginUnderFuzz->drainHubPort();
    return 0;
}
