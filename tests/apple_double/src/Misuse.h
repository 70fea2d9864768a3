// Calls into the double that the real frameworks would not survive or that the double cannot serve.
#pragma once

namespace appledouble {

// Counts the misuse and names it on standard error. The call then returns its failure result.
void reportMisuse(const char* function, const char* what);

}  // namespace appledouble
