// Drives the real libBQLColloqPlugin.so end to end: the test host plays the client, the
// substitute runtime plays the headsets. Every test gets its own log and port folders, a
// pristine runtime and client, and fails at teardown on any unexpected error line.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hostharness/HostHarness.h"
#include "hostharness/PluginLibrary.h"
#include "vexilctl/VexilControl.h"
#include "vexilrt/Events.h"

namespace e2e {

using namespace std::chrono_literals;
using hostharness::CallbackSlot;
using hostharness::HostCall;

constexpr auto kWait = 10s;

// A simulated headset of the maker.
struct Headset {
    std::string path;
    std::string productName;
    uint16_t productId;
};

class PluginEndToEnd : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    hostharness::HostHarness& client() { return hostharness::HostHarness::instance(); }

    // Plugs a headset in; the product name should not contain "-" or "_", which the client's
    // device identifiers do not carry back.
    Headset plugHeadset(uint16_t productId, const std::string& serial, const std::string& productName,
                        bool hasDisplay = true);
    // The client's identifier of a headset's audio device.
    static std::string clientDeviceId(const Headset& headset);

    // initialize, then waits until the plug-in has connected to the runtime.
    void initializePlugin();
    void uninitializePlugin();
    // The client reports its audio device; with a headset present this activates the plug-in.
    void chooseClientDevice(const std::string& clientId);
    // initialize, then make the headset the client's device.
    void startWithHeadset(const Headset& headset);

    // Fires a call callback from this thread.
    void fireCall(CallbackSlot slot, int32_t id, int32_t clientState, const std::string& number = "",
                  const std::string& name = "");
    void fireAudio(CallbackSlot slot);
    // Returns once the worker has handled everything queued before this call.
    void drainWorker();

    // Waits for a call-control operation recorded after `after` (a journal sequence number).
    hostharness::RecordedCall expectClientCall(HostCall call, const std::string& device, uint64_t after = 0);
    // Waits for a line of the client's log.
    hostharness::RecordedCall expectClientLog(const std::string& text, uint64_t after = 0);
    uint64_t clientMark() { return client().journal().lastSequence(); }
    std::size_t clientCallCount(HostCall call) { return client().journal().countOf(call); }

    // The runtime's command log.
    std::vector<VexilCtlCommand> runtimeCommands();
    std::vector<VexilCtlCommand> runtimeCommandsOf(int32_t command);
    // Waits until the runtime has logged at least `count` commands of this kind.
    std::vector<VexilCtlCommand> expectRuntimeCommands(int32_t command, std::size_t count);
    int32_t headsetCallState(int32_t callId);

    // Button presses and dialling on a headset, delivered by the runtime's thread.
    void press(const Headset& headset, int32_t code, int32_t callId, const char* keys = nullptr);
    void dial(const Headset& headset, const std::string& number);

    // The plug-in's local log file.
    std::string localLog() const;
    // Lines at severity 1 in the client's log and ERROR lines in the local log fail the test
    // at teardown unless the test expects them.
    void allowErrors() { errorsExpected = true; }

    std::string folder;
    hostharness::PluginLibrary plugin;
    bool errorsExpected = false;
};

}  // namespace e2e
