// The client's device name as a regular expression over the runtime's product names.
#include "handlers/DeviceNamePattern.h"

#include <cctype>
#include <cstddef>

namespace {

// The client's name is matched as a pattern, and a name such as "(.*)*(.*)*(.*)*x" would make a
// backtracking matcher run for ages on the client's thread. libstdc++ can match in time
// polynomial in the name and the product name instead; names with back-references are then
// refused like other invalid patterns. Other libraries match as they always do.
#if defined(__GLIBCXX__)
constexpr std::regex::flag_type kNamePatternSyntax = std::regex::ECMAScript | std::regex_constants::__polynomial;
#else
constexpr std::regex::flag_type kNamePatternSyntax = std::regex::ECMAScript;
#endif

// libstdc++ reads the digits of a repetition count or a back-reference without a bound, and a
// long run overflows inside the library. A count or reference of this many digits never makes a
// usable pattern (too many states, or no such group), so such names are refused before it reads
// them. A "{" inside a bracket expression is taken for a count too: no device name holds one.
constexpr std::size_t kMaximumCountDigits = 9;

std::size_t digitsAt(const std::string& text, std::size_t at) {
    std::size_t digits = 0;
    while (at + digits < text.size() && std::isdigit(static_cast<unsigned char>(text[at + digits])) != 0) {
        ++digits;
    }
    return digits;
}

bool hasOverlongCount(const std::string& name) {
    bool inCount = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const char c = name[at];
        if (c == '\\') {
            if (digitsAt(name, at + 1) > kMaximumCountDigits) {
                return true;
            }
            ++at;  // the escaped character is taken literally
            continue;
        }
        if (c == '{') {
            inCount = true;
        } else if (c == '}') {
            inCount = false;
        }
        if (inCount && (c == '{' || c == ',') && digitsAt(name, at + 1) > kMaximumCountDigits) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::regex deviceNamePattern(const std::string& name) {
    if (hasOverlongCount(name)) {
        throw std::regex_error(std::regex_constants::error_badbrace);
    }
    return std::regex(name, kNamePatternSyntax);
}
