// Apple's pthread_setname_np names the calling thread. Linux keeps 15 characters; longer names
// are cut there instead of refused.
#include <pthread.h>

#include <cerrno>
#include <cstring>

int pthread_setname_np(const char* name) {
    if (name == nullptr) {
        return EINVAL;
    }
    char kept[16] = {};
    std::strncpy(kept, name, sizeof kept - 1);
    return pthread_setname_np(pthread_self(), kept);
}
