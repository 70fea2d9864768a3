// The product id a client device identifier carries after "pid_".
#pragma once

#include <string>

// The lower-case hexadecimal digits after the first "pid_" in text, or "".
std::string hidal_get_pid(const std::string& text);
