#include "platform/ThreadName.h"

#include <pthread.h>

namespace platform {

// Apple's variant names only the calling thread.
void nameCurrentThread(const char* name) { pthread_setname_np(name); }

}  // namespace platform
