#include "hubproxy/DevicePid.h"

#include <regex>

std::string hidal_get_pid(const std::string& text) {
    static const std::regex pidPattern("pid_([0-9a-f]+)");
    std::smatch match;
    if (std::regex_search(text, match, pidPattern)) {
        return match[1].str();
    }
    return std::string();
}
