// Prints the figures of a run as tables with their ratios and targets, and as JSON.
#pragma once

#include <ostream>
#include <string>

#include "Options.h"
#include "Results.h"

namespace bench {

void printReport(const Results& results, const Options& options, std::ostream& out);
// False when the file cannot be written.
bool writeJson(const Results& results, const Options& options, const std::string& path);
// Whether every phase that ran produced valid figures (targets aside).
bool allValid(const Results& results);

}  // namespace bench
