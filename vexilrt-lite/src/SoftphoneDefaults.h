// The runtime's ISoftphoneDefaults: which softphone plug-in is the default one (0 = none).
#pragma once

#include <atomic>
#include <cstdint>

#include "vexilrt/RuntimeInterfaces.h"

namespace vexil {

class Runtime;

class SoftphoneDefaults final : public ISoftphoneDefaults {
public:
    explicit SoftphoneDefaults(Runtime& runtime) : runtime_(runtime) {}

    int32_t reserved1() override;
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
    int32_t reserved13() override;
    int32_t setDefaultSoftphone(int32_t pluginId) override;

    int32_t defaultSoftphone() const { return default_.load(); }
    void reset() { default_.store(0); }

private:
    Runtime& runtime_;
    std::atomic<int32_t> default_{0};
};

}  // namespace vexil
