// The demo's story: a softphone connects to the runtime, a headset is plugged in, a call rings
// and is answered from the headset, a number is dialled on it, the headset is unplugged and the
// softphone disconnects. Any status other than the expected one ends the story with a
// DemoFailure that says which step failed.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "Inbox.h"
#include "Listeners.h"
#include "bqlcommon/ReleasingPtr.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace demo {

class DemoFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class DemoScript {
public:
    // The listeners outlive the script: they stay valid until the runtime is shut down.
    DemoScript(Inbox& inbox, CallListener& calls, DeviceListener& devices)
        : inbox_(inbox), calls_(calls), devices_(devices) {}

    void run();

private:
    void connect();
    void plugInHeadset();
    void attachToHeadset();
    void ringAndAnswerFromHeadset();
    void dialFromHeadset();
    void unplugHeadset();
    void disconnect();

    // Lets the runtime deliver what it has, then expects exactly one event of `kind`.
    HeardEvent awaitEvent(HeardEvent::Kind kind, const std::string& what);
    // What the runtime read of the last call command, and what the headset shows for the call.
    static std::string lastCommandSeen(int32_t callId);

    Inbox& inbox_;
    CallListener& calls_;
    DeviceListener& devices_;

    ISessionManager* manager_ = nullptr;
    ISessionManagerInt* managerInt_ = nullptr;
    bql::ReleasingPtr<ISession> session_;
    bql::ReleasingPtr<ICallCommand> command_;
    bql::ReleasingPtr<IDevice> device_;
    int32_t pluginId_ = 0;
    std::string headsetPath_;
};

}  // namespace demo
