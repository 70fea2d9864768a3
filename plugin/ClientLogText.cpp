#include "plugin/ClientLogText.h"

std::string clientLogMessage(const char* format) {
    std::string message;
    if (format == nullptr) {
        return message;
    }
    for (const char* at = format; *at != '\0' && message.size() < kClientLogMessageCapacity - 1; ++at) {
        message.push_back(*at);
        if (at[0] == '%' && at[1] == '%') {
            ++at;
        }
    }
    return message;
}

std::string clientLogLine(const char* version, const std::string& message) {
    return std::string("BQLColloqPlugin v.") + (version ? version : "") + ": " + message;
}
