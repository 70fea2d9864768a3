#include "ScenarioParser.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>

#include "HeadsetButton.h"
#include "HubDriver.h"
#include "Tokenizer.h"

namespace colloqsim {

namespace {

const std::set<std::string>& verbsOf(const std::string& subject) {
    static const std::set<std::string> headset = {"rings", "dials", "active", "held",   "resumed",
                                                  "ended", "inserted", "muted", "unmuted", "refused", "selected"};
    static const std::set<std::string> client = {"answered", "connected", "ended",     "rejected", "held",
                                                 "resumed",  "muted",     "unmuted",   "dialled",  "foreground",
                                                 "dtmf",     "released",  "uses",      "switched", "calls",
                                                 "rings",    "busy",      "ignored"};
    static const std::set<std::string> plugin = {"makeCall",   "answerCall",          "endCall",
                                                 "sendDtmf",   "muteCall",            "unmuteCall",
                                                 "holdCall",   "resumeCall",          "activeDeviceChanged",
                                                 "releaseActiveDevice", "rejectCall", "getCalls",
                                                 "registerAccessoryCallbacks", "unregisterAccessoryCallbacks"};
    static const std::set<std::string> hub = {"received", "sent"};
    static const std::set<std::string> log = {"line"};
    static const std::set<std::string> none;
    if (subject == "headset") return headset;
    if (subject == "client") return client;
    if (subject == "plugin") return plugin;
    if (subject == "hub") return hub;
    if (subject == "log") return log;
    return none;
}

std::string joined(const std::set<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

// Reads one command's words from left to right; the first problem found wins.
class Reader {
public:
    Reader(std::vector<std::string> words, ScenarioCommand* command) : words_(std::move(words)), command_(command) {}

    bool failed() const { return !error_.empty(); }
    const std::string& error() const { return error_; }
    void fail(const std::string& problem) {
        if (error_.empty()) {
            error_ = problem;
        }
    }
    bool more() const { return next_ < words_.size(); }
    std::string peek() const { return more() ? words_[next_] : ""; }

    std::string word(const char* what) {
        if (!more()) {
            fail("missing " + std::string(what));
            return "";
        }
        return words_[next_++];
    }
    std::string optionalWord() { return more() ? words_[next_++] : ""; }

    int64_t number(const char* what, int64_t low, int64_t high) {
        const std::string text = word(what);
        if (failed()) {
            return 0;
        }
        char* end = nullptr;
        errno = 0;
        const long long value = std::strtoll(text.c_str(), &end, 10);
        if (text.empty() || *end != '\0' || errno != 0 || value < low || value > high) {
            fail(std::string(what) + " must be a number from " + std::to_string(low) + " to " + std::to_string(high) +
                 ", not \"" + text + "\"");
            return 0;
        }
        return value;
    }
    int32_t call() { return static_cast<int32_t>(number("call id", -1, 2147483647)); }
    void optionalCall() {
        if (more()) {
            command_->call = call();
        }
    }
    void end() {
        if (more() && !failed()) {
            fail("unexpected \"" + words_[next_] + "\" at the end");
        }
    }

private:
    std::vector<std::string> words_;
    std::size_t next_ = 0;
    ScenarioCommand* command_;
    std::string error_;
};

void parsePlug(Reader& in, ScenarioCommand& command) {
    command.action = Action::Plug;
    command.headset = in.word("headset name");
    command.plugged.name = command.headset;
    command.plugged.model = "Model 5.1";
    command.serial = command.headset;
    while (in.more() && !in.failed()) {
        const std::string option = in.word("option");
        if (option == "model") {
            command.plugged.model = in.word("model name");
        } else if (option == "serial") {
            command.serial = in.word("serial");
        } else if (option == "product") {
            const std::string text = in.word("product id");
            char* end = nullptr;
            const unsigned long value = std::strtoul(text.c_str(), &end, 16);
            if (text.empty() || *end != '\0' || value > 0xffff) {
                in.fail("product id must be 1 to 4 hexadecimal digits, not \"" + text + "\"");
            }
            command.plugged.productId = static_cast<uint16_t>(value);
        } else if (option == "display") {
            const std::string text = in.word("yes or no");
            if (text != "yes" && text != "no") {
                in.fail("display must be yes or no, not \"" + text + "\"");
            }
            command.plugged.hasDisplay = text == "yes";
        } else {
            in.fail("unknown plug option \"" + option + "\" (model, product, serial, display)");
        }
    }
}

void parseClient(Reader& in, ScenarioCommand& command) {
    const std::string verb = in.word("what the client does");
    if (verb == "device") {
        command.action = Action::ClientDevice;
        command.headset = in.word("headset name");
    } else if (verb == "incoming" || verb == "waiting" || verb == "outgoing") {
        command.action = verb == "incoming"  ? Action::ClientIncoming
                         : verb == "waiting" ? Action::ClientWaiting
                                             : Action::ClientOutgoing;
        command.call = in.call();
        command.number = in.word("number");
        command.name = in.optionalWord();
    } else if (verb == "mutes" || verb == "unmutes") {
        command.action = verb == "mutes" ? Action::UserMutes : Action::UserUnmutes;
    } else {
        static const std::pair<const char*, Action> withCall[] = {
            {"remote-answers", Action::RemoteAnswers}, {"remote-hangs-up", Action::RemoteHangsUp},
            {"remote-busy", Action::RemoteBusy},       {"answers", Action::UserAnswers},
            {"hangs-up", Action::UserHangsUp},         {"holds", Action::UserHolds},
            {"resumes", Action::UserResumes}};
        for (const auto& [word, action] : withCall) {
            if (verb == word) {
                command.action = action;
                command.call = in.call();
                return;
            }
        }
        if (!in.failed()) {
            in.fail("unknown client action \"" + verb +
                    "\" (device incoming waiting outgoing remote-answers remote-hangs-up remote-busy answers "
                    "hangs-up holds resumes mutes unmutes)");
        }
    }
}

void parseHub(Reader& in, ScenarioCommand& command) {
    const std::string verb = in.word("hub action");
    if (verb == "dial") {
        command.action = Action::HubDial;
        command.word = in.word("number");
    } else if (verb == "active") {
        command.action = Action::HubActive;
        command.headset = in.word("headset name");
    } else if (verb == "send") {
        command.action = Action::HubSend;
        command.word = in.word("hub simulator command");
    } else if (!in.failed()) {
        if (HubDriver::actionWord(verb).empty()) {
            in.fail("unknown hub action \"" + verb + "\"");
            return;
        }
        command.action = Action::HubEvent;
        command.word = verb;
        if (in.more() && in.peek() != "keys" && in.peek() != "device") {
            command.call = in.call();
        }
        while (in.more() && !in.failed()) {
            const std::string option = in.word("option");
            if (option == "keys") {
                command.number = in.word("keys");
            } else if (option == "device") {
                command.headset = in.word("headset name");
            } else {
                in.fail("unknown hub option \"" + option + "\" (keys, device)");
            }
        }
    }
}

void parseExpect(Reader& in, ScenarioCommand& command) {
    command.action = Action::Expect;
    command.pattern.subject = in.word("subject (client, headset, plugin, hub, log)");
    if (in.failed()) {
        return;
    }
    const std::set<std::string>& verbs = verbsOf(command.pattern.subject);
    if (verbs.empty()) {
        in.fail("unknown subject \"" + command.pattern.subject + "\" (client, headset, plugin, hub, log)");
        return;
    }
    if (command.pattern.subject == "log") {
        command.pattern.verb = "line";
        command.pattern.argument = in.word("log text");
    } else {
        command.pattern.verb = in.word("what is expected");
        if (!in.failed() && verbs.count(command.pattern.verb) == 0) {
            in.fail("cannot expect " + command.pattern.subject + " \"" + command.pattern.verb + "\" (" +
                    joined(verbs) + ")");
            return;
        }
        if (in.more() && in.peek() != "within") {
            command.pattern.argument = in.word("argument");
        }
    }
    if (in.more() && in.peek() == "within") {
        in.word("within");
        command.within = std::chrono::milliseconds(in.number("time-out in milliseconds", 0, 600000));
    }
}

}  // namespace

LineResult parseLine(const std::string& text, const std::string& file, int line) {
    LineResult result;
    std::vector<std::string> words;
    std::string problem;
    const auto failure = [&](const std::string& why) {
        result.command.reset();
        result.error = file + ":" + std::to_string(line) + ": " + why;
        return result;
    };
    if (!tokenize(text, &words, &problem)) {
        return failure(problem);
    }
    if (words.empty()) {
        return result;
    }
    ScenarioCommand command;
    command.file = file;
    command.line = line;
    command.source = text;
    const std::string first = words.front();
    Reader in(std::vector<std::string>(words.begin() + 1, words.end()), &command);
    if (first == "mode") {
        command.action = Action::Mode;
        const std::string mode = in.word("direct or hub");
        if (!in.failed() && mode != "direct" && mode != "hub") {
            in.fail("mode must be direct or hub, not \"" + mode + "\"");
        }
        command.hubMode = mode == "hub";
    } else if (first == "start") {
        command.action = Action::Start;
    } else if (first == "plug") {
        parsePlug(in, command);
    } else if (first == "unplug") {
        command.action = Action::Unplug;
        command.headset = in.word("headset name");
    } else if (first == "press") {
        command.action = Action::Press;
        command.headset = in.word("headset name");
        command.word = in.word("button");
        if (!in.failed() && !buttonCode(command.word)) {
            in.fail("unknown button \"" + command.word + "\" (" + buttonWords() + ")");
        }
        in.optionalCall();
    } else if (first == "keys") {
        command.action = Action::Keys;
        command.headset = in.word("headset name");
        command.word = in.word("keys");
        in.optionalCall();
    } else if (first == "dial") {
        command.action = Action::Dial;
        command.headset = in.word("headset name");
        command.word = in.word("number");
    } else if (first == "client") {
        parseClient(in, command);
    } else if (first == "hub") {
        parseHub(in, command);
    } else if (first == "wait") {
        command.action = Action::WaitIdle;
        const std::string what = in.word("idle");
        if (!in.failed() && what != "idle") {
            in.fail("wait takes only idle; expectations wait for what they expect");
        }
    } else if (first == "expect") {
        parseExpect(in, command);
    } else {
        return failure("unknown command \"" + first + "\" (try help)");
    }
    in.end();
    if (in.failed()) {
        return failure(in.error());
    }
    result.command = std::move(command);
    return result;
}

std::vector<std::string> parseScenario(const std::string& text, const std::string& file, Scenario* scenario) {
    std::vector<std::string> errors;
    scenario->file = file;
    scenario->commands.clear();
    std::istringstream lines(text);
    std::string line;
    int number = 0;
    while (std::getline(lines, line)) {
        ++number;
        LineResult result = parseLine(line, file, number);
        if (!result.error.empty()) {
            errors.push_back(result.error);
        } else if (result.command) {
            if (result.command->action == Action::Mode && !scenario->commands.empty()) {
                errors.push_back(result.command->where() + ": mode must come before every other command");
            }
            scenario->commands.push_back(std::move(*result.command));
        }
    }
    return errors;
}

std::vector<std::string> parseScenarioFile(const std::string& path, Scenario* scenario) {
    std::ifstream in(path);
    if (!in) {
        return {path + ": cannot read the scenario: " + std::strerror(errno)};
    }
    std::ostringstream text;
    text << in.rdbuf();
    return parseScenario(text.str(), path, scenario);
}

const char* scenarioHelp() {
    return R"(Commands (one a line; "quote texts with blanks"; # starts a comment):
  mode direct|hub                     first line only: headsets direct, or through the hub simulator
  start                               load and initialize the plug-in now (else on first need)
  plug <headset> [model "Model 5.1"] [product 0a1b] [serial SN1] [display yes|no]
  unplug <headset>
  press <headset> answer|end|reject|hold|resume|mute|unmute|select [<call>]
  keys <headset> <keys> [<call>]      DTMF keys pressed on the headset
  dial <headset> <number>             a number dialled on the headset
  client device <headset>             the client takes the headset as its audio device
  client incoming|waiting|outgoing <call> <number> ["<name>"]
  client remote-answers|remote-hangs-up|remote-busy <call>
  client answers|hangs-up|holds|resumes <call>
  client mutes|unmutes
  hub <action> [<call>] [keys <keys>] [device <headset>]   a headset event sent by the hub
  hub dial <number> | hub active <headset> | hub send "<hub simulator command>"
  wait idle                           until the runtime and the client have handled everything
  expect <subject> <what> [<argument>] [within <ms>]
    headset rings|dials|active|held|resumed|ended|inserted|muted|unmuted|refused [<call>]
    headset selected [<headset>]        the runtime's active headset changed
    client  answered|connected|ended|rejected|held|resumed|muted|unmuted|dialled|foreground|
            dtmf|released|uses|switched|calls|rings|busy|ignored [<argument>]
    (an argument that names a plugged headset stands for its device: its path for the headset
     and the hub, the client's name for it for the client)
    plugin  <call-control operation> [<argument>]       e.g. expect plugin answerCall
    hub     received|sent [<state>]
    log     "<text the line contains>")";
}

}  // namespace colloqsim
