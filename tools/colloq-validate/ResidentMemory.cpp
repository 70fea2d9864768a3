#include "ResidentMemory.h"

#include <fstream>
#include <sstream>
#include <string>

// Present when a sanitizer runtime is linked in: hands the memory its allocator keeps back
// (freed blocks held in quarantine, per-thread caches) to the system.
extern "C" void __sanitizer_purge_allocator() __attribute__((weak));

namespace colloqvalidate {

int64_t residentKib() {
    if (__sanitizer_purge_allocator != nullptr) {
        __sanitizer_purge_allocator();
    }
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmRSS:", 0) == 0) {
            std::istringstream fields(line.substr(6));
            int64_t kib = -1;
            fields >> kib;
            return fields ? kib : -1;
        }
    }
    return -1;
}

}  // namespace colloqvalidate
