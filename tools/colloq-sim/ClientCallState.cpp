#include "ClientCallState.h"

namespace colloqsim {

std::string clientStateName(int32_t state) {
    static const char* const names[] = {"idle",     "off-hook", "dialtone",     "dialling",  "busy", "reorder",
                                        "alerting", "ringing",  "disconnected", "connected", "held"};
    if (state < 0 || state > clientstate::kHeld) {
        return "state" + std::to_string(state);
    }
    return names[state];
}

}  // namespace colloqsim
