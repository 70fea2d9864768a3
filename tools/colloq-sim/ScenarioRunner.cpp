#include "ScenarioRunner.h"

#include <sstream>

namespace colloqsim {

namespace {

constexpr auto kIdleTimeout = std::chrono::seconds(10);
constexpr std::size_t kShownInstead = 8;

bool needsPlugin(Action action) { return action != Action::Mode && action != Action::Plug; }

}  // namespace

ScenarioRunner::ScenarioRunner(Session& session, Timeline& timeline, std::chrono::milliseconds expectTimeout)
    : session_(session), timeline_(timeline), expectTimeout_(expectTimeout) {}

RunResult ScenarioRunner::run(const Scenario& scenario) {
    for (const ScenarioCommand& command : scenario.commands) {
        RunResult result = execute(command);
        if (!result.ok) {
            return result;
        }
    }
    return RunResult{};
}

RunResult ScenarioRunner::execute(const ScenarioCommand& command) {
    if (command.action == Action::Mode) {
        if (session_.started()) {
            return RunResult{false, command.where() + ": mode must come before the plug-in starts"};
        }
        session_.setHubMode(command.hubMode);
        return RunResult{};
    }
    if (needsPlugin(command.action) && !session_.started()) {
        const std::string error = session_.start();
        if (!error.empty()) {
            return RunResult{false, command.where() + ": " + error, true};
        }
    }
    if (command.action == Action::Expect) {
        return expect(command);
    }
    const std::string error = act(command);
    if (!error.empty()) {
        return RunResult{false, command.where() + ": " + error};
    }
    return RunResult{};
}

std::string ScenarioRunner::headsetPath(const std::string& name, std::string* error) const {
    const Headset* headset = session_.headsets().find(name);
    if (headset == nullptr) {
        *error = "no headset is called " + name + " (plug it in first)";
        return "";
    }
    return headset->path;
}

std::string ScenarioRunner::act(const ScenarioCommand& command) {
    HeadsetDriver& headsets = session_.headsets();
    HubDriver& hub = session_.hub();
    const bool viaHub = session_.hubMode();
    std::string error;
    switch (command.action) {
    case Action::Start: return "";
    case Action::Plug: {
        error = headsets.plug(command.plugged, command.serial);
        if (error.empty() && viaHub && hub.running()) {
            error = hub.makeActive(headsets.find(command.headset)->path);
        }
        return error;
    }
    case Action::Unplug: return headsets.unplug(command.headset);
    case Action::Press:
        if (viaHub) {
            const std::string path = headsetPath(command.headset, &error);
            return error.empty() ? hub.event(command.word, command.call, path, "") : error;
        }
        return headsets.press(command.headset, command.word, command.call);
    case Action::Keys:
        if (viaHub) {
            const std::string path = headsetPath(command.headset, &error);
            return error.empty() ? hub.event("dtmf", command.call, path, command.word) : error;
        }
        return headsets.keys(command.headset, command.word, command.call);
    case Action::Dial:
        if (viaHub) {
            headsetPath(command.headset, &error);
            return error.empty() ? hub.dial(command.word) : error;
        }
        return headsets.dial(command.headset, command.word);
    case Action::HubEvent: {
        std::optional<std::string> path;
        if (!command.headset.empty()) {
            path = headsetPath(command.headset, &error);
            if (!error.empty()) {
                return error;
            }
        }
        return hub.event(command.word, command.call, path, command.number);
    }
    case Action::HubDial: return hub.dial(command.word);
    case Action::HubActive: {
        const std::string path = headsetPath(command.headset, &error);
        return error.empty() ? hub.makeActive(path) : error;
    }
    case Action::HubSend: return hub.send(command.word);
    case Action::WaitIdle:
        return session_.waitIdle(kIdleTimeout) ? "" : "the runtime or the client was still busy after 10 s";
    default: return clientAct(command);
    }
}

std::string ScenarioRunner::clientAct(const ScenarioCommand& command) {
    const int32_t id = command.call;
    const std::string number = command.number;
    const std::string name = command.name;
    switch (command.action) {
    case Action::ClientDevice: {
        const Headset* headset = session_.headsets().find(command.headset);
        if (headset == nullptr) {
            return "no headset is called " + command.headset + " (plug it in first)";
        }
        const std::string device = HeadsetDriver::clientDeviceId(*headset);
        return session_.client().act([&device](ClientModel& model) { return model.chooseDevice(device); });
    }
    case Action::ClientIncoming:
    case Action::ClientWaiting: {
        const bool waiting = command.action == Action::ClientWaiting;
        return session_.client().act(
            [&](ClientModel& model) { return model.incoming(id, number, name, waiting); });
    }
    case Action::ClientOutgoing:
        return session_.client().act([&](ClientModel& model) { return model.outgoing(id, number, name); });
    case Action::RemoteAnswers:
        return session_.client().act([id](ClientModel& model) { return model.remoteAnswers(id); });
    case Action::RemoteHangsUp:
        return session_.client().act([id](ClientModel& model) { return model.remoteHangsUp(id); });
    case Action::RemoteBusy:
        return session_.client().act([id](ClientModel& model) { return model.remoteBusy(id); });
    case Action::UserAnswers:
        return session_.client().act([id](ClientModel& model) { return model.userAnswers(id); });
    case Action::UserHangsUp:
        return session_.client().act([id](ClientModel& model) { return model.userHangsUp(id); });
    case Action::UserHolds:
        return session_.client().act([id](ClientModel& model) { return model.userHolds(id); });
    case Action::UserResumes:
        return session_.client().act([id](ClientModel& model) { return model.userResumes(id); });
    case Action::UserMutes: return session_.client().act([](ClientModel& model) { return model.userMutes(); });
    case Action::UserUnmutes: return session_.client().act([](ClientModel& model) { return model.userUnmutes(); });
    default: return "this command cannot be carried out here";
    }
}

EventPattern ScenarioRunner::resolved(EventPattern pattern) const {
    const Headset* headset = session_.headsets().find(pattern.argument);
    if (headset != nullptr && pattern.subject != "log") {
        // The client names its audio devices its own way; the plug-in and the runtime use paths.
        pattern.argument = pattern.subject == "client" && pattern.verb == "switched"
                               ? HeadsetDriver::clientDeviceId(*headset)
                               : headset->path;
    }
    return pattern;
}

RunResult ScenarioRunner::expect(const ScenarioCommand& command) {
    const std::chrono::milliseconds timeout = command.within.value_or(expectTimeout_);
    if (const auto seen = timeline_.take(resolved(command.pattern), timeout)) {
        return RunResult{};
    }
    std::ostringstream message;
    message << command.where() << ": expected " << command.pattern.describe() << " within " << timeout.count()
            << " ms";
    const std::vector<TimelineEvent> instead = timeline_.eventsOf(command.pattern.subject);
    if (instead.empty()) {
        message << ", but nothing of the " << command.pattern.subject << " happened";
    } else {
        message << "; what the " << command.pattern.subject << " saw instead"
                << (instead.size() > kShownInstead ? " (latest)" : "") << ":";
        const std::size_t first = instead.size() > kShownInstead ? instead.size() - kShownInstead : 0;
        for (std::size_t i = first; i < instead.size(); ++i) {
            message << "\n  " << instead[i].milliseconds << " ms  " << instead[i].text;
        }
    }
    return RunResult{false, message.str()};
}

}  // namespace colloqsim
