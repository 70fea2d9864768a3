// This process's resident memory as the system counts it.
#pragma once

#include <cstdint>

namespace colloqvalidate {

// VmRSS of /proc/self/status in KiB; -1 when it cannot be read.
int64_t residentKib();

}  // namespace colloqvalidate
