// The harness's earlier names for the shared lock discipline of bqlcommon, for hosts that still
// spell them so; new code includes "bqlcommon/Mutex.h" and uses the BQL_ names directly.
#pragma once

#include "bqlcommon/Mutex.h"

#define HH_CAPABILITY(name) BQL_CAPABILITY(name)
#define HH_SCOPED_CAPABILITY BQL_SCOPED_CAPABILITY
#define HH_GUARDED_BY(m) BQL_GUARDED_BY(m)
#define HH_PT_GUARDED_BY(m) BQL_PT_GUARDED_BY(m)
#define HH_REQUIRES(...) BQL_REQUIRES(__VA_ARGS__)
#define HH_ACQUIRE(...) BQL_ACQUIRE(__VA_ARGS__)
#define HH_RELEASE(...) BQL_RELEASE(__VA_ARGS__)
#define HH_EXCLUDES(...) BQL_EXCLUDES(__VA_ARGS__)

namespace hostharness {

using Mutex = bql::Mutex;
using MutexLock = bql::MutexLock;

}  // namespace hostharness
