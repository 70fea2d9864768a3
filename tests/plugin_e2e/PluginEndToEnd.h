// Drives the real libBQLColloqPlugin.so end to end: the test host plays the client, the
// substitute runtime plays the headsets. Every test gets its own log and port folders, a
// pristine runtime and client, and fails at teardown on any unexpected error line.
#pragma once

#include <chrono>
#include <cstdint>
#include <initializer_list>
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
using hostharness::RecordedCall;

constexpr auto kWait = 10s;

// The client's call states (its own numbering) that the tests report.
namespace clientstate {
constexpr int32_t kAlerting = 6;  // an outgoing call, the far end alerting
constexpr int32_t kRinging = 7;
constexpr int32_t kConnected = 9;
constexpr int32_t kHeld = 10;
}  // namespace clientstate

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
    // initialize without waiting for anything; returns what initialize returned.
    int callInitialize();
    void uninitializePlugin();
    // The client reports its audio device; with a headset present this activates the plug-in.
    void chooseClientDevice(const std::string& clientId);
    // initialize, then make the headset the client's device.
    void startWithHeadset(const Headset& headset);

    // Fires a call callback from this thread.
    void fireCall(CallbackSlot slot, int32_t id, int32_t clientState, const std::string& number = "",
                  const std::string& name = "");
    void fireAudio(CallbackSlot slot);
    // The client reports a ringing call and then its answer; returns once the headset shows it.
    void connectIncomingCall(int32_t id, const std::string& number = "", const std::string& name = "");
    // Returns once the worker has handled everything queued before this call, the runtime's
    // reports included. Needs the plug-in's runtime session.
    void drainWorker();

    // Waits for a call-control operation recorded after `after` (a journal sequence number).
    RecordedCall expectClientCall(HostCall call, const std::string& device, uint64_t after = 0);
    // Waits for a line of the client's log.
    RecordedCall expectClientLog(const std::string& text, uint64_t after = 0);
    // Waits for a line that the bound plug-in wrote to the client's log: its version prefix,
    // then message, at this severity.
    RecordedCall expectPluginLine(int32_t severity, const std::string& message, uint64_t after = 0);
    // Waits for these lines in this order, all at this severity.
    void expectPluginLinesInOrder(int32_t severity, std::initializer_list<std::string> messages, uint64_t after = 0);
    // Whether the client's log already holds the plug-in's line (any severity), without waiting.
    bool hasPluginLine(const std::string& message, uint64_t after = 0);
    // The text the client's log receives for a message of the bound plug-in.
    static std::string pluginLine(const std::string& message);
    uint64_t clientMark() { return client().journal().lastSequence(); }
    std::size_t clientCallCount(HostCall call) { return client().journal().countOf(call); }
    // The calls of one operation recorded after `after`, oldest first.
    std::vector<RecordedCall> clientCallsOf(HostCall call, uint64_t after = 0);

    // The runtime's command log.
    std::vector<VexilCtlCommand> runtimeCommands();
    std::vector<VexilCtlCommand> runtimeCommandsOf(int32_t command);
    // Waits until the runtime has logged at least `count` commands of this kind.
    std::vector<VexilCtlCommand> expectRuntimeCommands(int32_t command, std::size_t count);
    // The number of commands logged so far, and the commands logged after such a mark.
    std::size_t runtimeMark();
    std::vector<VexilCtlCommand> runtimeCommandsSince(std::size_t mark);
    int32_t headsetCallState(int32_t callId);
    // The runtime's active headset, "" for none.
    std::string runtimeActiveDevice();
    VexilCtlSession runtimeSession();
    bool runtimeRunning();

    // Button presses, dialling and device-wide reports of a headset, delivered by the
    // runtime's thread.
    void press(const Headset& headset, int32_t code, int32_t callId, const char* keys = nullptr);
    void dial(const Headset& headset, const std::string& number, const char* alternateNumber = nullptr);
    void reportCallState(const Headset& headset, int32_t code);

    // The plug-in's local log file.
    std::string localLog() const;
    // The messages of the local log's lines at this level ("ERROR", "INFO", "DEBUG") written
    // under this function name, oldest first.
    std::vector<std::string> localLogMessages(const std::string& level, const std::string& function) const;
    // Expects at least one such line with exactly this message.
    void expectLocalLog(const std::string& level, const std::string& function, const std::string& message) const;
    // Lines at severity 1 in the client's log and ERROR lines in the local log fail the test
    // at teardown unless the test expects them.
    void allowErrors() { errorsExpected = true; }

    std::string folder;
    hostharness::PluginLibrary plugin;
    bool errorsExpected = false;

private:
    // The plug-in's flag that a headset is present belongs to the library, not to an instance,
    // and the library stays mapped: a test run after another in the same process would find it
    // set and its start would not load the client's calls. A start whose only headset is then
    // unplugged clears it; the runtime and the client are reset afterwards.
    void clearHeadsetPresenceLeftInProcess();
};

// Most tests start the same way: one headset of the maker plugged in, and the plug-in started
// with it as the client's device.
class StartedWithOneHeadset : public PluginEndToEnd {
protected:
    void SetUp() override;

    Headset headset;
};

// Tests of choosing between two headsets of the maker, both plugged in before the start.
class WithTwoHeadsets : public PluginEndToEnd {
protected:
    void SetUp() override;

    Headset first;
    Headset second;
};

}  // namespace e2e
