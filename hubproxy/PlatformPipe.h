// The pipe implementation of the platform the build targets: message ports wherever the Apple
// frameworks are built against (on Apple systems, or their test double), sockets elsewhere.
#pragma once

#if defined(__APPLE__) && !defined(BQL_APPLE_FRAMEWORKS)
#error "Apple builds take the pipe's frameworks from the bql_hubproxy target"
#endif

#ifdef BQL_APPLE_FRAMEWORKS
#include "hubproxy/MacCommonPipe.h"
using PlatformPipe = MacCommonPipe;
#else
#include "hubproxy/LinuxCommonPipe.h"
using PlatformPipe = LinuxCommonPipe;
#endif
