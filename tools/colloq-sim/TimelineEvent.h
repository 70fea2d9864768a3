// One interaction shown on the timeline, and what a scenario's expectation looks for in it.
#pragma once

#include <cstdint>
#include <string>

namespace colloqsim {

enum class Direction {
    ClientToPlugin,   // callbacks the client fires
    PluginToClient,   // call-control operations the plug-in calls
    PluginToHeadset,  // commands the runtime (or the hub) received from the plug-in
    HeadsetToPlugin,  // button presses, dialling, devices plugged in or out
    HubToPlugin,      // records the hub simulator sent
    PluginToHub,      // records the hub simulator received that concern no call
    ClientLog,        // lines the plug-in wrote to the client's log
    Client,           // what the client did in itself (a call connected, its device switched)
    Note,             // the simulator's own remarks
};

// "client → plug-in" and the like.
const char* directionText(Direction direction);
// "client-to-plugin" and the like, for JSON.
const char* directionKey(Direction direction);

struct TimelineEvent {
    uint64_t sequence = 0;
    int64_t milliseconds = 0;  // since the simulator started
    Direction direction = Direction::Note;
    // What an expectation matches: subject ("client", "headset", "log"), verb ("rings") and an
    // argument (a call id, a number, a key), each possibly empty.
    std::string subject;
    std::string verb;
    std::string argument;
    std::string text;      // the readable line
    int32_t severity = 0;  // client log lines
};

// An expectation: subject and verb must be equal; the argument too when it is given. For log
// lines the argument is a text the line must contain.
struct EventPattern {
    std::string subject;
    std::string verb;
    std::string argument;

    bool matches(const TimelineEvent& event) const;
    std::string describe() const;
};

}  // namespace colloqsim
