// What the benchmark and its hub process (bql-bench-hub) tell each other over their control
// datagram socket. Raw datagrams are padded to the size of the hub record, so the lower bound
// moves exactly as many bytes as the plug-in's pipe does.
#pragma once

#include <cstddef>
#include <cstdint>

#include "hubproxy/ColloqCallArgs.h"

namespace bench {

enum class HubMessageKind : int32_t {
    Ready = 1,          // hub -> bench: the hub's port is ours
    Failed = 2,         // hub -> bench: the port could not be had
    RawPing = 3,        // bench -> hub, record-sized: stamp = when it was sent
    RawReceived = 4,    // hub -> bench: stamp = when the ping arrived
    RawSend = 5,        // bench -> hub: send one record-sized datagram on the raw socket
    RawDatagram = 6,    // hub -> bench (raw socket), record-sized: stamp = when it was sent
    SendAccept = 7,     // bench -> hub: send the headset's accept for callId to the plug-in
    Sent = 8,           // hub -> bench: stamp = just before that record went out
    CallRecord = 9,     // hub -> bench: a call record of the plug-in arrived at stamp
    DeviceRequest = 10, // hub -> bench: the plug-in asked for the active device (and got it)
    Quit = 11,          // bench -> hub
};

struct HubMessage {
    HubMessageKind kind = HubMessageKind::Ready;
    int32_t callId = 0;
    int32_t callState = 0;
    int32_t reserved = 0;
    int64_t stampNs = 0;
};

constexpr std::size_t kRecordBytes = sizeof(ColloqCallArgs);
static_assert(kRecordBytes == 2196, "the hub record is 2196 bytes");

// The name the plug-in's hub check looks for.
constexpr const char* kHubProcessName = "Brimquell Hub";

}  // namespace bench
