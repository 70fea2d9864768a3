// The real plug-in as the client runs it, set up for timing: the test host loads
// libBQLColloqPlugin.so, the substitute runtime supplies one headset, and two hooks stamp the
// moments that end a path: the runtime's command observer (a call command taken) and the host's
// journal listener (a call-control operation, a line of the client's log). Both run on the
// plug-in's thread at the moment of the call and only post a stamp.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <optional>
#include <string>

#include "Mailbox.h"
#include "bqlcommon/Mutex.h"
#include "hostharness/CallbackSlot.h"
#include "hostharness/PluginLibrary.h"
#include "hostharness/RecordedCall.h"
#include "vexilctl/VexilControl.h"

namespace bench {

constexpr auto kWaitLimit = std::chrono::seconds(10);

// The client's call states the benchmark reports.
constexpr int32_t kClientRinging = 7;
constexpr int32_t kClientConnected = 9;

class TerminateListener {
public:
    virtual void ended(int32_t callId) = 0;

protected:
    ~TerminateListener() = default;
};

class PluginSession {
public:
    explicit PluginSession(std::string pluginPath);
    ~PluginSession();
    PluginSession(const PluginSession&) = delete;
    PluginSession& operator=(const PluginSession&) = delete;

    // Private log and port folders, a pristine runtime and client, one headset plugged in, the
    // library loaded and both hooks installed. False with error() set otherwise.
    bool prepare();
    // initialize, then waits until the plug-in reports that it reached the runtime. Returns the
    // stamps of the call and of that report.
    bool initialize(int64_t* calledNs = nullptr, int64_t* connectedNs = nullptr);
    // initialize without waiting for anything (in hub mode the proxy may serve from the start).
    bool initializeOnly();
    bool uninitialize();
    // The client makes the headset its audio device, which activates the plug-in.
    bool chooseHeadset();
    // The client switches to its built-in speaker, a device of no headset.
    bool chooseOtherDevice();
    // The client fires a call callback on this thread.
    bool fire(hostharness::CallbackSlot slot, int32_t callId, int32_t clientState);
    bool pressAccept(int32_t callId);

    // The stamp of the runtime's next command of this kind for this call.
    std::optional<int64_t> awaitCommand(int32_t command, int32_t callId);
    // The stamp of the client's next answerCall.
    std::optional<int64_t> awaitAnswer();
    // Told the call id of every terminate command the runtime takes, on the plug-in's thread;
    // null to stop. The listener must outlive its use.
    void setTerminateListener(TerminateListener* listener) { terminateListener_.store(listener); }
    // Drops the host's journal and the runtime's command log, so that a long run measures the
    // plug-in's memory, not theirs.
    void forgetRecords();

    const std::string& folder() const { return folder_; }
    const std::string& headsetPath() const { return headsetPath_; }
    const std::string& error() const { return error_; }

private:
    bool chooseDevice(const char* clientId);
    static void onCommand(const VexilCtlCommand* command, void* context);
    void onClientCall(const hostharness::RecordedCall& call);

    const std::string pluginPath_;
    std::string folder_;
    std::string headsetPath_;
    std::string error_;
    hostharness::PluginLibrary library_;
    Mailbox commands_;
    Mailbox answers_;
    Mailbox connected_;
    std::atomic<TerminateListener*> terminateListener_{nullptr};
};

}  // namespace bench
