// The whole plug-in, started once per fuzzer process against the test host (playing the client)
// and the substitute runtime (playing the headsets), in a scratch folder of its own: the local
// log, the hub ports and a stand-in "ps" all live there, so nothing outside the process decides
// which handler serves, and no hub runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "colloq/AccessoryAPI.h"

class BQLColloqPlugin;

namespace fuzzsupport {

// Which handler the plug-in's hub check settles on: the stand-in "ps" either shows the hub
// process or shows nothing.
enum class HeadsetSide { Direct, Hub };

// A headset the runtime lists from the start.
struct PluggedHeadset {
    std::string path;
    std::string productName;
    std::string clientDeviceId;  // how the client names its audio device
};

class PluginUnderFuzz {
public:
    // Starts the plug-in on the first call and returns the same instance afterwards; the side
    // must be the same every time. The plug-in is active (a headset of the maker is the client's
    // device) and serves through the chosen handler when this returns. Aborts when it cannot.
    static PluginUnderFuzz& start(HeadsetSide side);

    BQLColloqPlugin& plugin();
    // The callback table the plug-in registered with the test host.
    const Accessory_CallControlCallback_v1_0_t& callbacks();
    const PluggedHeadset& headset(std::size_t index) const;
    std::size_t headsetCount() const;

    // Returns once the worker has handled every event queued before the call; aborts when it
    // has not within the time-out (a worker that ended or hangs is a finding).
    void drainWorker();
    // One block to the plug-in's hub port, as the hub would send it.
    void sendToHubPort(const uint8_t* data, std::size_t size);
    // Like drainWorker, for blocks sent to the hub port: the marker travels the same way.
    void drainHubPort();

private:
    explicit PluginUnderFuzz(HeadsetSide side);
    PluginUnderFuzz(const PluginUnderFuzz&) = delete;
    PluginUnderFuzz& operator=(const PluginUnderFuzz&) = delete;

    void prepareFolder();
    void plugHeadsets();
    void waitUntilProxyServes();
    void waitForDialledMarker(const std::string& number);
    static void stopAtExit();

    const HeadsetSide side;
    std::string folder;
    std::string hubPortPath;
    uint64_t markers = 0;
};

}  // namespace fuzzsupport
