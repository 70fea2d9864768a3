#include "platform/HubPresence.h"

#include <cstdlib>

namespace platform {

bool isHubProcessRunning() { return std::system(kHubProcessCheckCommand) == 0; }

}  // namespace platform
