// The simulator's command language: one command a line, words separated by blanks, "double
// quotes" around texts with blanks (\" and \\ inside), # starts a comment.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "hubproxy/ColloqCallArgs.h"

struct HubCommand {
    enum class Kind {
        Nothing,       // an empty or comment line
        HeadsetEvent,  // a call message with a headset action code
        Dial,          // a dial request
        SetActive,     // make a device the active one and report it
        ClearActive,   // have no active device and report that
        Report,        // report the active device as it is
        Sleep,         // pause before the next command
        Quit,
        Help,
    };

    Kind kind = Kind::Nothing;
    ColloqCallState state = static_cast<ColloqCallState>(0);  // HeadsetEvent
    int32_t callId = 0;                                        // HeadsetEvent
    std::optional<std::string> device;                         // HeadsetEvent (unset: the active device), SetActive
    std::string extra;                                         // HeadsetEvent
    std::string keys;                                          // HeadsetEvent
    std::string number;                                        // Dial
    std::chrono::milliseconds pause{0};                        // Sleep
};

// Parses one line. Returns false and describes the problem in `error` when it is not a command.
bool ParseCommand(const std::string& line, HubCommand& command, std::string& error);

// The command summary that "help" prints.
const char* CommandHelp();
