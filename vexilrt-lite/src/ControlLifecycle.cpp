// Control functions about the control interface and the runtime as a whole.
#include "ControlSupport.h"
#include "Runtime.h"

using vexil::controlGuarded;
using vexil::Runtime;

extern "C" const char* vexilctl_status_text(int32_t status) {
    switch (status) {
        case VEXILCTL_OK:
            return "success";
        case VEXILCTL_E_INVALID_ARG:
            return "invalid argument";
        case VEXILCTL_E_TOO_LONG:
            return "text too long for its field";
        case VEXILCTL_E_NOT_FOUND:
            return "not found";
        case VEXILCTL_E_ALREADY_EXISTS:
            return "already exists";
        case VEXILCTL_E_NOT_RUNNING:
            return "runtime not running";
        case VEXILCTL_E_RUNNING:
            return "runtime still running";
        case VEXILCTL_E_NO_SESSION:
            return "no session registered";
        case VEXILCTL_E_NO_DEVICE:
            return "no active headset";
        case VEXILCTL_E_TIMEOUT:
            return "timed out";
        case VEXILCTL_E_BUFFER_TOO_SMALL:
            return "buffer too small";
        case VEXILCTL_E_WRONG_THREAD:
            return "not allowed on the event thread";
        case VEXILCTL_E_INTERNAL:
            return "internal failure";
        default:
            return "unknown status";
    }
}

extern "C" int32_t vexilctl_reset(void) {
    return controlGuarded([]() -> int32_t {
        return Runtime::instance().resetWhenStopped() ? VEXILCTL_OK : VEXILCTL_E_RUNNING;
    });
}
