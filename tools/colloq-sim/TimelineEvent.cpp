#include "TimelineEvent.h"

namespace colloqsim {

const char* directionText(Direction direction) {
    switch (direction) {
    case Direction::ClientToPlugin: return "client → plug-in";
    case Direction::PluginToClient: return "plug-in → client";
    case Direction::PluginToHeadset: return "plug-in → headset";
    case Direction::HeadsetToPlugin: return "headset → plug-in";
    case Direction::HubToPlugin: return "hub → plug-in";
    case Direction::PluginToHub: return "plug-in → hub";
    case Direction::ClientLog: return "client log";
    case Direction::Client: return "client";
    case Direction::Note: return "simulator";
    }
    return "?";
}

const char* directionKey(Direction direction) {
    switch (direction) {
    case Direction::ClientToPlugin: return "client-to-plugin";
    case Direction::PluginToClient: return "plugin-to-client";
    case Direction::PluginToHeadset: return "plugin-to-headset";
    case Direction::HeadsetToPlugin: return "headset-to-plugin";
    case Direction::HubToPlugin: return "hub-to-plugin";
    case Direction::PluginToHub: return "plugin-to-hub";
    case Direction::ClientLog: return "client-log";
    case Direction::Client: return "client";
    case Direction::Note: return "simulator";
    }
    return "?";
}

bool EventPattern::matches(const TimelineEvent& event) const {
    if (event.subject != subject || event.verb != verb) {
        return false;
    }
    if (argument.empty()) {
        return true;
    }
    if (subject == "log") {
        return event.text.find(argument) != std::string::npos;
    }
    return event.argument == argument;
}

std::string EventPattern::describe() const {
    std::string text = subject + " " + verb;
    if (!argument.empty()) {
        text += subject == "log" ? " \"" + argument + "\"" : " " + argument;
    }
    return text;
}

}  // namespace colloqsim
