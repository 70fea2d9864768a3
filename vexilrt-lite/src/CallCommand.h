// The runtime's ICallCommand of one session: what the softphone tells the headset about its
// calls. Every command is written to the command log with what the runtime read through the
// softphone's ICall and IContact, and, when accepted, changes the headset's call state.
#pragma once

#include <cstdint>

#include "RefCount.h"
#include "vexilctl/VexilControl.h"
#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class Runtime;

class CallCommand final : public ICallCommand {
public:
    // Commands are accepted while the session `pluginId` stays registered.
    CallCommand(Runtime& runtime, int32_t pluginId) : runtime_(runtime), pluginId_(pluginId) {}

    void Release() override;
    int32_t incomingCall(ICall* call, IContact* contact, int32_t a, int32_t b) override;
    int32_t outgoingCall(ICall* call, IContact* contact, int32_t a) override;
    int32_t terminateCall(ICall* call) override;
    int32_t answeredCall(ICall* call) override;
    int32_t holdCall(ICall* call) override;
    int32_t resumeCall(ICall* call) override;
    int32_t insertCall(ICall* call, IContact* contact) override;
    int32_t setMute(bool mute) override;

private:
    ~CallCommand() = default;

    // Reads the caller's objects into `entry`, decides the status, applies the command when
    // accepted, and logs it.
    int32_t execute(const char* faultName, VexilCtlCommand entry, ICall* call, IContact* contact);
    int32_t decide(const char* faultName, const VexilCtlCommand& entry);
    void apply(const VexilCtlCommand& entry);

    Runtime& runtime_;
    const int32_t pluginId_;
    RefCount references_;
};

}  // namespace vexil
