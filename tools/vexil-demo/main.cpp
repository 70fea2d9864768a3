// vexil-demo: plays a softphone against the substitute Vexil runtime and prints, line by line,
// every command it sends and every event it hears, with the thread each happened on.
//
//   vexil-demo                        the whole story; exit 0
//   vexil-demo --fail <operation>     the same with one runtime operation failing (status -1),
//                                     e.g. ICallCommand::holdCall, to show how a failure ends it
#include <cstdio>
#include <cstring>
#include <exception>
#include <thread>

#include "DemoScript.h"
#include "Inbox.h"
#include "Listeners.h"
#include "vexilctl/VexilControl.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace {

constexpr int kUsageError = 2;

int usage() {
    std::fprintf(stderr, "usage: vexil-demo [--fail <operation>]\n");
    return kUsageError;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--fail") == 0) {
        const int32_t status = vexilctl_inject_fault(argv[2], VEXIL_E_REFUSED, VEXILCTL_FAULT_ALWAYS);
        if (status != VEXILCTL_OK) {
            std::fprintf(stderr, "vexil-demo: cannot make \"%s\" fail: %s\n", argv[2], vexilctl_status_text(status));
            return kUsageError;
        }
    } else if (argc != 1) {
        return usage();
    }

    // The listeners live until the runtime is shut down, whichever way the story ends.
    demo::Inbox inbox(std::this_thread::get_id());
    demo::CallListener calls(inbox);
    demo::DeviceListener devices(inbox);
    try {
        demo::DemoScript(inbox, calls, devices).run();
        return 0;
    } catch (const demo::DemoFailure& failure) {
        std::fprintf(stderr, "vexil-demo: %s\n", failure.what());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vexil-demo: unexpected failure: %s\n", error.what());
    }
    ShutDownVexilRuntime();
    return 1;
}
