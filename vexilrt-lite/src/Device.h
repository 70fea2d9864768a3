// A headset as handed to a softphone: an IDevice reference (a snapshot of the headset, so it
// stays readable after the headset is unplugged) and the IHostCommand it owns.
#pragma once

#include <cstdint>

#include "Headset.h"
#include "RefCount.h"
#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class FaultInjector;

class HostCommand final : public IHostCommand {
public:
    explicit HostCommand(bool hasDisplay) : hasDisplay_(hasDisplay) {}

    int32_t reserved1() override;
    int32_t reserved2() override;
    int32_t reserved3() override;
    int32_t reserved4() override;
    int32_t reserved5() override;
    int32_t reserved6() override;
    int32_t reserved7() override;
    bool isFeatureSupported(int32_t feature) override;

private:
    const bool hasDisplay_;
};

class Device final : public IDevice {
public:
    Device(Headset headset, FaultInjector& faults);

    // Another reference for a second holder; each one is given back through Release().
    void addReference() { references_.add(); }

    void Release() override;
    int32_t reserved2() override;
    int32_t reserved3() override;
    int32_t reserved4() override;
    int32_t getDevicePath(wchar_t* buffer, int32_t capacity) override;
    int32_t reserved6() override;
    int32_t getProductName(wchar_t* buffer, int32_t capacity) override;
    int32_t reserved8() override;
    int32_t reserved9() override;
    int32_t reserved10() override;
    int32_t reserved11() override;
    int32_t reserved12() override;
    int32_t reserved13() override;
    int32_t reserved14() override;
    int32_t getHostCommand(IHostCommand** command) override;

private:
    ~Device() = default;

    const Headset headset_;
    FaultInjector& faults_;
    HostCommand hostCommand_;
    RefCount references_;
};

}  // namespace vexil
