#include "FakeClient.h"

#include <cstring>
#include <mutex>
#include <ostream>

namespace fakeclient {

namespace {

std::mutex logMutex;
std::vector<ClientLogLine> lines;  // guarded by logMutex

int16_t refuseCallbacks(Accessory_CallControlCallback_v1_0_t* /*table*/) { return ACCESSORY_STATUS_FAILURE; }

int16_t getLogger(const char* /*name*/, ACCLogger_t* logger) {
    std::memset(logger, 0, sizeof *logger);
    return 0;
}

void log(ACCLogger_t* /*logger*/, Accessory_LogMsg_Severity severity, const char* text) {
    std::lock_guard<std::mutex> guard(logMutex);
    lines.push_back(ClientLogLine{severity, text ? text : ""});
}

}  // namespace

bool operator==(const ClientLogLine& left, const ClientLogLine& right) {
    return left.severity == right.severity && left.text == right.text;
}

void PrintTo(const ClientLogLine& line, std::ostream* out) {
    *out << '{' << line.severity << " | \"" << line.text << "\"}";
}

int16_t entryPoint(Accessory_APIVersion_t version, void* table) {
    if (version == ACCESSORY_API_CALL_CONTROL_V1_0) {
        auto* callControl = static_cast<Accessory_CallControlAPI_v1_0_t*>(table);
        std::memset(callControl, 0, sizeof *callControl);
        callControl->registerAccessoryCallbacks = &refuseCallbacks;
        return 0;
    }
    if (version == ACCESSORY_API_LOGGER_V1_0) {
        auto* logger = static_cast<Accessory_LoggerAPI_v1_0_t*>(table);
        logger->getLogger = &getLogger;
        logger->log = &log;
        return 0;
    }
    return ACCESSORY_STATUS_FAILURE;
}

std::vector<ClientLogLine> logLines() {
    std::lock_guard<std::mutex> guard(logMutex);
    return lines;
}

void clearLog() {
    std::lock_guard<std::mutex> guard(logMutex);
    lines.clear();
}

}  // namespace fakeclient
