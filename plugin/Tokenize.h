// Splitting dotted version strings and colon-separated device identifiers.
#pragma once

#include <string>
#include <vector>

// Splits text at any character of delimiters; runs of delimiters count as one, and leading or
// trailing delimiters give no empty tokens.
std::vector<std::string> Tokenize(const std::string& text, const std::string& delimiters);

// Exactly four dot-separated numbers into major, minor, build and revision: 0. Any other number
// of parts: -1, outputs untouched. A part without leading digits throws std::invalid_argument,
// one out of range std::out_of_range (std::stoi's rules: "8b" gives 8).
int TokenizeVersion(int& major, int& minor, int& build, int& revision, const std::string& version);
