// A client that hands the plug-in its logger but refuses the plug-in's callbacks, so that
// binding stops before the worker and the headset side start: enough to see what the plug-in
// writes to the client's log.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "colloq/AccessoryAPI.h"

namespace fakeclient {

struct ClientLogLine {
    Accessory_LogMsg_Severity severity;
    std::string text;
};

bool operator==(const ClientLogLine& left, const ClientLogLine& right);
void PrintTo(const ClientLogLine& line, std::ostream* out);

// The accessory entry point given to the plug-in.
int16_t entryPoint(Accessory_APIVersion_t version, void* table);

// What reached the client's log since the last clear, oldest first.
std::vector<ClientLogLine> logLines();
void clearLog();

}  // namespace fakeclient
