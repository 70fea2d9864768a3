#include "hostharness/HostHarness.h"

#include "ClientEntryPoint.h"

namespace hostharness {

HostHarness& HostHarness::instance() {
    static HostHarness harness;
    return harness;
}

accessoryAPIEntryPoint_t HostHarness::entryPoint() const { return clientEntryPoint(); }

void HostHarness::reset() {
    callbacks_.forgetAll();
    loggers_.clear();
    responses_.reset();
    journal_.clear();
}

}  // namespace hostharness
