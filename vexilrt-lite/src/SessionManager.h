// The runtime's ISessionManager: sessions, plug-in status, session-manager subscribers and
// the softphone defaults.
#pragma once

#include <cstdint>

#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class Runtime;

class SessionManager final : public ISessionManager {
public:
    explicit SessionManager(Runtime& runtime) : runtime_(runtime) {}

    int32_t reserved1() override;
    int32_t unregisterSession(ISession* session) override;
    int32_t setPluginStatus(int32_t pluginId, int32_t status) override;
    int32_t reserved4() override;
    int32_t reserved5() override;
    int32_t reserved6() override;
    int32_t registerCallback(ISessionManagerEvents* events) override;
    int32_t unregisterCallback(ISessionManagerEvents* events) override;
    int32_t getSoftphoneDefaults(ISoftphoneDefaults** defaults) override;

private:
    Runtime& runtime_;
};

}  // namespace vexil
