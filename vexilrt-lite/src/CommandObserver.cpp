#include "CommandObserver.h"

#include "ControlSupport.h"

namespace vexil {

CommandObserver& CommandObserver::instance() {
    static CommandObserver observer;
    return observer;
}

void CommandObserver::set(VexilCtlCommandObserver observer, void* context) {
    bql::MutexLock lock(mutex_);
    observer_ = observer;
    context_ = context;
}

void CommandObserver::notify(const VexilCtlCommand& command) {
    VexilCtlCommandObserver observer = nullptr;
    void* context = nullptr;
    {
        bql::MutexLock lock(mutex_);
        observer = observer_;
        context = context_;
    }
    if (observer != nullptr) {
        observer(&command, context);
    }
}

}  // namespace vexil

extern "C" int32_t vexilctl_set_command_observer(VexilCtlCommandObserver observer, void* context) {
    return vexil::controlGuarded([&]() -> int32_t {
        vexil::CommandObserver::instance().set(observer, context);
        return VEXILCTL_OK;
    });
}
