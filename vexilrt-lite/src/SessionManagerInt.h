// The runtime's ISessionManagerInt: session registration and the device list as a softphone
// sees it (enumeration, refresh, choosing the active device).
#pragma once

#include <cstdint>

#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class Runtime;

class SessionManagerInt final : public ISessionManagerInt {
public:
    explicit SessionManagerInt(Runtime& runtime) : runtime_(runtime) {}

    int32_t registerSession(const wchar_t* name, int32_t kind, ISession** session) override;
    int32_t reserved2() override;
    int32_t reserved3() override;
    int32_t reserved4() override;
    int32_t reserved5() override;
    int32_t reserved6() override;
    int32_t reserved7() override;
    int32_t reserved8() override;
    int32_t reserved9() override;
    int32_t reserved10() override;
    int32_t reserved11() override;
    int32_t reserved12() override;
    int32_t getDeviceEnumerator(IDeviceEnumerator** enumerator) override;
    int32_t reserved14() override;
    int32_t reserved15() override;
    int32_t reserved16() override;
    int32_t refreshDevices(int32_t mode) override;
    int32_t reserved18() override;
    int32_t setActiveDevice(const wchar_t* path) override;

private:
    Runtime& runtime_;
};

}  // namespace vexil
