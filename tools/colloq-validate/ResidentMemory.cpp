#include "ResidentMemory.h"

#include <fstream>
#include <sstream>
#include <string>

namespace colloqvalidate {

int64_t residentKib() {
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
