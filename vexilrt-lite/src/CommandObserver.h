// The one observer of the call commands a host may set (vexilctl_set_command_observer).
#pragma once

#include "bqlcommon/Mutex.h"
#include "vexilctl/VexilCommandObserver.h"

namespace vexil {

class CommandObserver {
public:
    static CommandObserver& instance();

    void set(VexilCtlCommandObserver observer, void* context) BQL_EXCLUDES(mutex_);
    // Tells the observer, if any, outside the lock.
    void notify(const VexilCtlCommand& command) BQL_EXCLUDES(mutex_);

private:
    bql::Mutex mutex_;
    VexilCtlCommandObserver observer_ BQL_GUARDED_BY(mutex_) = nullptr;
    void* context_ BQL_GUARDED_BY(mutex_) = nullptr;
};

}  // namespace vexil
