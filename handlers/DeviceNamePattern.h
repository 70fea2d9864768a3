// The client's device name read as a regular expression, as the device lookup matches it against
// the runtime's product names.
#pragma once

#include <regex>
#include <string>

// The pattern of `name`. Throws std::regex_error for a name that is no valid pattern, and for one
// that this library could not match safely (see the source).
std::regex deviceNamePattern(const std::string& name);
