#include "platform/ThreadName.h"

#include <pthread.h>

#include <cstring>

namespace platform {

void nameCurrentThread(const char* name) {
    char shortName[16] = {};
    std::strncpy(shortName, name, sizeof shortName - 1);
    pthread_setname_np(pthread_self(), shortName);
}

}  // namespace platform
