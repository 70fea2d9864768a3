#include "HubDriver.h"

#include <map>
#include <sstream>

#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

namespace colloqsim {

namespace {

using boost::property_tree::ptree;

std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += c;
    }
    return out + "\"";
}

// What a call record the plug-in sends means for the headset.
const std::map<std::string, std::string>& headsetVerbs() {
    static const std::map<std::string, std::string> verbs = {
        {"incoming", "rings"}, {"outgoing", "dials"},  {"answered", "active"}, {"hold", "held"},
        {"resume", "resumed"}, {"terminate", "ended"}, {"insert", "inserted"}, {"mute", "muted"},
        {"unmute", "unmuted"}};
    return verbs;
}

std::string describeRecord(const ptree& json) {
    std::ostringstream text;
    const std::string type = json.get<std::string>("messageTypeName", "");
    text << (type.empty() ? json.get<std::string>("messageType", "?") : type);
    const std::string state = json.get<std::string>("callStateName", "");
    text << " state=" << (state.empty() ? "" : state + "(") << json.get<std::string>("callState", "?")
         << (state.empty() ? "" : ")");
    if (type == "active-device") {
        text << " action=" << json.get<std::string>("deviceAction", "?");
    } else {
        text << " call=" << json.get<std::string>("callId", "?");
    }
    for (const char* field : {"devicePath", "contactName", "phoneNumber", "dtmfKeys", "extraText"}) {
        const std::string value = json.get<std::string>(field, "");
        if (!value.empty()) {
            text << " " << field << "=" << quoted(value);
        }
    }
    const int64_t productId = json.get<int64_t>("productId", 0);
    if (productId != 0) {
        text << " productId=" << productId;
    }
    return text.str();
}

ptree parse(const std::string& line) {
    ptree tree;
    std::istringstream input(line);
    try {
        boost::property_tree::read_json(input, tree);
    } catch (const boost::property_tree::json_parser_error&) {
        tree.clear();
    }
    return tree;
}

}  // namespace

TimelineEvent describeHubLine(const std::string& line) {
    TimelineEvent event;
    const ptree json = parse(line);
    const std::string notice = json.get<std::string>("notice", "");
    if (!notice.empty()) {
        event.direction = Direction::Note;
        event.subject = "hub";
        event.verb = notice;
        event.text = "hub simulator: " + notice + " " + json.get<std::string>("text", "");
        return event;
    }
    const std::string direction = json.get<std::string>("direction", "");
    if (direction.empty()) {
        event.direction = Direction::Note;
        event.subject = "hub";
        event.verb = "said";
        event.text = "hub simulator: " + line;
        return event;
    }
    if (json.count("blockLength") != 0) {
        event.direction = Direction::PluginToHub;
        event.subject = "hub";
        event.verb = "block";
        event.text = "a block of " + json.get<std::string>("blockLength", "?") + " bytes that is no record";
        return event;
    }
    const std::string state = json.get<std::string>("callStateName", "");
    event.argument = json.get<std::string>("callId", "");
    event.text = describeRecord(json);
    if (direction == "sent") {
        event.direction = Direction::HubToPlugin;
        event.subject = "hub";
        event.verb = "sent";
        event.argument = state;
        return event;
    }
    event.direction = Direction::PluginToHub;
    const auto verb = headsetVerbs().find(state);
    if (json.get<std::string>("messageTypeName", "") == "call" && verb != headsetVerbs().end()) {
        event.subject = "headset";
        event.verb = verb->second;
        if (verb->second == "muted" || verb->second == "unmuted") {
            event.argument.clear();
        }
        event.text += "  → headset " + verb->second;
    } else {
        event.subject = "hub";
        event.verb = "received";
        event.argument = state.empty() ? json.get<std::string>("messageTypeName", "") : state;
    }
    return event;
}

std::string HubDriver::actionWord(const std::string& word) {
    static const std::map<std::string, std::string> buttons = {
        {"answer", "accept"}, {"end", "terminate"}, {"hold", "hold"},     {"resume", "resume"},
        {"mute", "mute"},     {"unmute", "unmute"}, {"reject", "reject"}, {"select", "device-selected"}};
    static const char* const actions[] = {"device-selected",
                                          "foreground",
                                          "foreground-when-idle",
                                          "foreground-alt",
                                          "foreground-when-idle-alt",
                                          "accept",
                                          "terminate",
                                          "terminate-alt",
                                          "hold",
                                          "resume",
                                          "mute",
                                          "unmute",
                                          "dtmf",
                                          "reject",
                                          "device-change"};
    const auto button = buttons.find(word);
    if (button != buttons.end()) {
        return button->second;
    }
    for (const char* action : actions) {
        if (word == action) {
            return word;
        }
    }
    return "";
}

std::string HubDriver::start(const std::string& program, const std::string& activeDevice,
                             std::chrono::milliseconds timeout) {
    std::vector<std::string> arguments{"--json"};
    if (!activeDevice.empty()) {
        arguments.push_back("--device");
        arguments.push_back(activeDevice);
    }
    std::string error;
    if (!process_.start(program, arguments, [this](const std::string& line) { onLine(line); }, &error)) {
        return error;
    }
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bql::MutexLock lock(mutex_);
    while (!isListening_) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return "the hub simulator did not take the hub's port in time (is another hub running?)";
        }
        lock.waitUntil(listening_, deadline);
    }
    return "";
}

std::string HubDriver::stop() {
    if (!process_.running()) {
        return "";
    }
    return process_.stop(std::chrono::seconds(5)) ? "" : "the hub simulator did not end cleanly";
}

void HubDriver::onLine(const std::string& line) {
    TimelineEvent event = describeHubLine(line);
    const bool listening = event.subject == "hub" && event.verb == "listening";
    if (event.verb == "error") {
        timeline_.problem(event.text);
    }
    timeline_.record(std::move(event));
    if (listening) {
        {
            bql::MutexLock lock(mutex_);
            isListening_ = true;
        }
        listening_.notify_all();
    }
}

std::string HubDriver::send(const std::string& command) {
    if (!process_.running()) {
        return "the hub simulator is not running (start the scenario with: mode hub)";
    }
    return process_.writeLine(command) ? "" : "the hub simulator no longer takes commands";
}

std::string HubDriver::event(const std::string& action, int32_t callId, const std::optional<std::string>& device,
                             const std::string& keys) {
    const std::string word = actionWord(action);
    if (word.empty()) {
        return "the hub has no action " + action;
    }
    std::string command = word + " call=" + std::to_string(callId);
    if (device) {
        command += " device=" + quoted(*device);
    }
    if (!keys.empty()) {
        command += " keys=" + quoted(keys);
    }
    return send(command);
}

std::string HubDriver::dial(const std::string& number) { return send("dial " + quoted(number)); }

std::string HubDriver::makeActive(const std::string& device) { return send("active " + quoted(device)); }

}  // namespace colloqsim
