#include "hubproxy/DevicePid.h"

#include <re2/re2.h>

std::string hidal_get_pid(const std::string& text) {
    // RE2, as for device names: the identifier comes from the client, and std::regex's matcher
    // recurses once per digit, so a long run of them would exhaust a small thread stack. Never
    // destroyed: the hub handler may still look up a product id while the process exits.
    static const RE2& pidPattern = *new RE2("pid_([0-9a-f]+)", RE2::Latin1);
    std::string pid;
    RE2::PartialMatch(text, pidPattern, &pid);
    return pid;
}
