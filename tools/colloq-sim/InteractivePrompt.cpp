#include "InteractivePrompt.h"

#include <cstdlib>

namespace colloqsim {

namespace {

constexpr const char* kPromptFile = "prompt";

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return "";
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace

InteractivePrompt::InteractivePrompt(ScenarioRunner& runner, Timeline& timeline, std::istream& in, bool showPrompt)
    : runner_(runner), timeline_(timeline), in_(in), showPrompt_(showPrompt) {}

std::string InteractivePrompt::resolve(const std::string& line, std::string* error) const {
    if (line.empty() || line[0] != '!') {
        return line;
    }
    if (line == "!!") {
        if (history_.empty()) {
            *error = "the history is empty";
            return "";
        }
        return history_.back();
    }
    char* end = nullptr;
    const long number = std::strtol(line.c_str() + 1, &end, 10);
    if (*end != '\0' || number < 1 || static_cast<std::size_t>(number) > history_.size()) {
        *error = "no line " + line.substr(1) + " in the history";
        return "";
    }
    return history_[static_cast<std::size_t>(number - 1)];
}

bool InteractivePrompt::run() {
    bool allFine = true;
    std::string raw;
    for (;;) {
        if (showPrompt_) {
            timeline_.say("colloq-sim> ");
        }
        if (!std::getline(in_, raw)) {
            break;
        }
        std::string error;
        const std::string line = resolve(trimmed(raw), &error);
        if (!error.empty()) {
            timeline_.problem(error);
            continue;
        }
        if (line.empty() || line[0] == '#') {
            continue;
        }
        if (line == "quit" || line == "exit") {
            break;
        }
        if (line == "help") {
            timeline_.say(std::string(scenarioHelp()) + "\n  history | !N | !! | quit\n");
            continue;
        }
        if (line == "history") {
            std::string listed;
            for (std::size_t i = 0; i < history_.size(); ++i) {
                listed += "  " + std::to_string(i + 1) + "  " + history_[i] + "\n";
            }
            timeline_.say(listed);
            continue;
        }
        history_.push_back(line);
        const LineResult parsed = parseLine(line, kPromptFile, static_cast<int>(history_.size()));
        if (!parsed.error.empty()) {
            timeline_.problem(parsed.error);
            allFine = false;
            continue;
        }
        if (!parsed.command) {
            continue;
        }
        const RunResult result = runner_.execute(*parsed.command);
        if (!result.ok) {
            timeline_.problem(result.message);
            allFine = false;
        }
    }
    return allFine;
}

}  // namespace colloqsim
