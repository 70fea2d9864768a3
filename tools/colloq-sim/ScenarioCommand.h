// One command of the scenario language, as the parser checked it.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "HeadsetDriver.h"
#include "TimelineEvent.h"

namespace colloqsim {

enum class Action {
    Mode,            // mode direct|hub
    Start,           // start
    Plug,            // plug <headset> [model <text>] [product <hex>] [serial <text>] [display yes|no]
    Unplug,          // unplug <headset>
    Press,           // press <headset> <button> [<call>]
    Keys,            // keys <headset> <keys> [<call>]
    Dial,            // dial <headset> <number>
    ClientDevice,    // client device <headset>
    ClientIncoming,  // client incoming <call> <number> [<name>]
    ClientWaiting,   // client waiting <call> <number> [<name>]
    ClientOutgoing,  // client outgoing <call> <number> [<name>]
    RemoteAnswers,   // client remote-answers <call>
    RemoteHangsUp,   // client remote-hangs-up <call>
    RemoteBusy,      // client remote-busy <call>
    UserAnswers,     // client answers <call>
    UserHangsUp,     // client hangs-up <call>
    UserHolds,       // client holds <call>
    UserResumes,     // client resumes <call>
    UserMutes,       // client mutes
    UserUnmutes,     // client unmutes
    HubEvent,        // hub <action> [<call>] [keys <keys>] [device <headset>]
    HubDial,         // hub dial <number>
    HubActive,       // hub active <headset>
    HubSend,         // hub send <command>
    WaitIdle,        // wait idle
    Expect,          // expect <subject> <verb> [<argument>] [within <ms>]
};

struct ScenarioCommand {
    Action action = Action::Start;
    std::string file;
    int line = 0;
    std::string source;  // the line as written

    bool hubMode = false;       // Mode
    std::string headset;        // the headset's name
    std::string word;           // button, hub action, number (Dial, HubDial), keys, raw hub command
    std::string number;         // Client*: the far end's number
    std::string name;           // Client*: the far end's name
    int32_t call = -1;          // call id; -1 when not given
    Headset plugged;            // Plug
    std::string serial;         // Plug
    EventPattern pattern;       // Expect
    std::optional<std::chrono::milliseconds> within;  // Expect

    // "file:line" for messages.
    std::string where() const { return file + ":" + std::to_string(line); }
};

}  // namespace colloqsim
