// The scenario language typed at a prompt: each line runs at once; "help" lists the commands,
// "history" the lines run so far, "!N" runs line N again, "!!" the last one, "quit" ends.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "ScenarioRunner.h"

namespace colloqsim {

class InteractivePrompt {
public:
    // Everything it shows goes through the timeline, which other threads print to as well.
    InteractivePrompt(ScenarioRunner& runner, Timeline& timeline, std::istream& in, bool showPrompt);

    // Reads until "quit" or the end of the input. False when any command failed.
    bool run();

    const std::vector<std::string>& history() const { return history_; }

private:
    // The line to run for a history reference, or the line itself; "" and an error when the
    // reference points nowhere.
    std::string resolve(const std::string& line, std::string* error) const;

    ScenarioRunner& runner_;
    Timeline& timeline_;
    std::istream& in_;
    bool showPrompt_;
    std::vector<std::string> history_;
};

}  // namespace colloqsim
