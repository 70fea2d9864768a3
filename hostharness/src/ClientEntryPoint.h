// The client's C functions behind the harness's entry point.
#pragma once

#include "colloq/AccessoryAPI.h"

namespace hostharness {

accessoryAPIEntryPoint_t clientEntryPoint();

}  // namespace hostharness
