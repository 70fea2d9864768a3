// The pipe implementation of the platform the build targets.
#pragma once

#ifdef __APPLE__
#include "hubproxy/MacCommonPipe.h"
using PlatformPipe = MacCommonPipe;
#else
#include "hubproxy/LinuxCommonPipe.h"
using PlatformPipe = LinuxCommonPipe;
#endif
