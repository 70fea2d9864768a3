// The handle of a registered softphone session, given to the softphone by registerSession.
// It carries no state of its own: the session is looked up by the handle's address, so a
// handle that outlives its registration answers VEXIL_E_NOT_FOUND.
#pragma once

#include <cstdint>

#include "RefCount.h"
#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class Runtime;

class Session final : public ISession {
public:
    explicit Session(Runtime& runtime) : runtime_(runtime) {}

    void Release() override;
    int32_t reserved2() override;
    int32_t getPluginId(int32_t* pluginId) override;
    int32_t reserved4() override;
    int32_t registerCallback(ICallEvents* events) override;
    int32_t unregisterCallback(ICallEvents* events) override;
    int32_t getCallCommand(ICallCommand** command) override;
    int32_t reserved8() override;
    int32_t getActiveDevice(IDevice** device) override;

private:
    ~Session() = default;

    Runtime& runtime_;
    RefCount references_;
};

}  // namespace vexil
