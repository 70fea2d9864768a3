// Reads the scenario language: one command a line, checked completely before anything runs.
// Every error names the file, the line and the problem.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ScenarioCommand.h"

namespace colloqsim {

struct LineResult {
    std::optional<ScenarioCommand> command;  // nothing for a blank or comment line
    std::string error;                       // "file:line: problem", empty when the line is fine
};

LineResult parseLine(const std::string& text, const std::string& file, int line);

struct Scenario {
    std::string file;
    std::vector<ScenarioCommand> commands;
};

// Every error of the text, one a line; the scenario is only usable when there is none.
std::vector<std::string> parseScenario(const std::string& text, const std::string& file, Scenario* scenario);
// The same for a file; a file that cannot be read gives one error naming it.
std::vector<std::string> parseScenarioFile(const std::string& path, Scenario* scenario);

// A short summary of the language for help.
const char* scenarioHelp();

}  // namespace colloqsim
