// One call a plug-in made into the client, with its arguments, as the journal keeps it.
#pragma once

#include <cstdint>
#include <string>
#include <thread>

#include "hostharness/HostCall.h"

namespace hostharness {

struct RecordedCall {
    uint64_t sequence = 0;  // 1 for the first call after a reset, then counting up
    HostCall call = HostCall::EntryPoint;
    std::thread::id thread;     // the plug-in's thread that made the call
    bool nullArgument = false;  // a pointer argument was null (the call was refused)

    std::string device;           // call-control operations with a device argument
    std::string number;           // makeCall
    char key = '\0';              // sendDtmf
    int32_t max = 0;              // getCalls
    const void* table = nullptr;  // entry point: the table to fill; (un)registration: the callback table
    uint32_t version = 0;         // entry point
    std::string loggerName;       // getLogger; log: the name the logger was issued under ("" if unknown)
    int32_t severity = 0;         // log
    std::string text;             // log
};

}  // namespace hostharness
