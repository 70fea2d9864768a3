#include "HubCommand.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <vector>

#include "RecordFormat.h"

namespace {

// Splits a line into words; quotes group blanks into a word and are removed.
bool SplitWords(const std::string& line, std::vector<std::string>& words, std::string& error) {
    std::string word;
    bool inWord = false;
    bool quoted = false;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const char c = line[at];
        if (quoted) {
            if (c == '\\' && at + 1 < line.size() && (line[at + 1] == '"' || line[at + 1] == '\\')) {
                word += line[++at];
            } else if (c == '"') {
                quoted = false;
            } else {
                word += c;
            }
        } else if (c == '"') {
            quoted = true;
            inWord = true;
        } else if (c == ' ' || c == '\t' || c == '\r') {
            if (inWord) {
                words.push_back(word);
                word.clear();
                inWord = false;
            }
        } else if (c == '#' && !inWord) {
            break;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quoted) {
        error = "unterminated quote";
        return false;
    }
    if (inWord) {
        words.push_back(word);
    }
    return true;
}

bool ParseNumber(const std::string& text, long long low, long long high, long long& value) {
    if (text.empty()) {
        return false;
    }
    errno = 0;
    char* end = nullptr;
    value = std::strtoll(text.c_str(), &end, 0);
    return errno == 0 && *end == '\0' && value >= low && value <= high;
}

// The action names of the hub's headset codes, as CallStateName spells them.
std::optional<ColloqCallState> HeadsetAction(const std::string& name) {
    for (uint32_t code = 1; code <= COLLOQ_DEVICE_CHANGE; ++code) {
        const bool sentByHub = code <= COLLOQ_REJECT_CALL || code == COLLOQ_DEVICE_CHANGE;
        if (sentByHub && CallStateName(code) == name) {
            return static_cast<ColloqCallState>(code);
        }
    }
    return std::nullopt;
}

bool ParseEventOptions(const std::vector<std::string>& words, std::size_t first, HubCommand& command,
                       std::string& error) {
    for (std::size_t at = first; at < words.size(); ++at) {
        const std::string& word = words[at];
        const std::size_t equals = word.find('=');
        const std::string key = word.substr(0, equals);
        const std::string value = equals == std::string::npos ? std::string() : word.substr(equals + 1);
        long long callId = 0;
        if (equals == std::string::npos) {
            error = "expected key=value, got '" + word + "'";
            return false;
        } else if (key == "call") {
            if (!ParseNumber(value, INT32_MIN, INT32_MAX, callId)) {
                error = "call id is not a 32-bit number: '" + value + "'";
                return false;
            }
            command.callId = static_cast<int32_t>(callId);
        } else if (key == "device") {
            command.device = value;
        } else if (key == "extra") {
            command.extra = value;
        } else if (key == "keys") {
            command.keys = value;
        } else {
            error = "unknown option '" + key + "' (call, device, extra, keys)";
            return false;
        }
    }
    return true;
}

bool ExpectWords(const std::vector<std::string>& words, std::size_t count, std::string& error) {
    if (words.size() != count) {
        error = "'" + words[0] + "' takes " + std::to_string(count - 1) + " argument(s)";
        return false;
    }
    return true;
}

}  // namespace

bool ParseCommand(const std::string& line, HubCommand& command, std::string& error) {
    command = HubCommand();
    std::vector<std::string> words;
    if (!SplitWords(line, words, error)) {
        return false;
    }
    if (words.empty()) {
        return true;
    }
    const std::string& verb = words[0];
    if (const std::optional<ColloqCallState> action = HeadsetAction(verb)) {
        command.kind = HubCommand::Kind::HeadsetEvent;
        command.state = *action;
        return ParseEventOptions(words, 1, command, error);
    }
    if (verb == "event") {
        long long code = 0;
        if (words.size() < 2 || !ParseNumber(words[1], 0, UINT32_MAX, code)) {
            error = "'event' takes a code from 0 to 4294967295, then options";
            return false;
        }
        command.kind = HubCommand::Kind::HeadsetEvent;
        command.state = static_cast<ColloqCallState>(code);
        return ParseEventOptions(words, 2, command, error);
    }
    if (verb == "dial") {
        command.kind = HubCommand::Kind::Dial;
        if (!ExpectWords(words, 2, error)) {
            return false;
        }
        command.number = words[1];
        return true;
    }
    if (verb == "active") {
        command.kind = HubCommand::Kind::SetActive;
        if (!ExpectWords(words, 2, error)) {
            return false;
        }
        command.device = words[1];
        return true;
    }
    if (verb == "sleep") {
        long long milliseconds = 0;
        if (words.size() != 2 || !ParseNumber(words[1], 0, 24LL * 3600 * 1000, milliseconds)) {
            error = "'sleep' takes milliseconds, at most one day";
            return false;
        }
        command.kind = HubCommand::Kind::Sleep;
        command.pause = std::chrono::milliseconds(milliseconds);
        return true;
    }
    const struct {
        const char* verb;
        HubCommand::Kind kind;
    } bareCommands[] = {{"no-active", HubCommand::Kind::ClearActive},
                        {"report", HubCommand::Kind::Report},
                        {"quit", HubCommand::Kind::Quit},
                        {"help", HubCommand::Kind::Help}};
    for (const auto& bare : bareCommands) {
        if (verb == bare.verb) {
            command.kind = bare.kind;
            return ExpectWords(words, 1, error);
        }
    }
    error = "unknown command '" + verb + "' (try help)";
    return false;
}

const char* CommandHelp() {
    return "Headset events (a call message to the plug-in):\n"
           "  <action> [call=ID] [device=PATH] [extra=TEXT] [keys=TEXT]\n"
           "    actions: device-selected(1) foreground(2) foreground-when-idle(3) foreground-alt(4)\n"
           "             foreground-when-idle-alt(5) accept(6) terminate(7) terminate-alt(8) hold(9)\n"
           "             resume(10) mute(11) unmute(12) dtmf(13) reject(14) device-change(19)\n"
           "    device defaults to the active device; dtmf takes keys=, device-change the name in keys=\n"
           "  event CODE [options]      the same with any numeric code\n"
           "dial NUMBER                 ask the plug-in to place a call\n"
           "active PATH                 make PATH the active device and report it\n"
           "no-active                   have no active device and report that\n"
           "report                      report the active device as it is\n"
           "sleep MS                    pause before the next command\n"
           "quit                        end the simulator\n";
}
