// Names the calling thread, so debuggers and ps show what each plug-in thread is.
#pragma once

namespace platform {

// Up to 15 characters are kept.
void nameCurrentThread(const char* name);

}  // namespace platform
