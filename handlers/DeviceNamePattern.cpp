// The client's device name as a regular expression over the runtime's product names.
//
// RE2 rather than the standard library: std::regex compiles by recursion, one stack frame per
// term (8 KiB of name overflows a 512 KiB thread, the default of a secondary thread on macOS), and
// libc++ matches by backtracking, so "(.*)*(.*)*#" keeps the client's thread for minutes. RE2
// guarantees linear-time matching, keeps its own stacks on the heap and bounds its memory. It
// reads Perl's grammar; a name is refused where that grammar and ECMAScript's part ways.
#include "handlers/DeviceNamePattern.h"

#include <cctype>
#include <cstdint>
#include <regex>
#include <string_view>

namespace {

// The program and both DFA caches together; a name within the length bound needs a small part.
constexpr int64_t kPatternMemoryBudget = 1 << 20;

// A repetition count RE2 reads: at most nine digits without a leading zero.
constexpr std::size_t kMaximumCountDigits = 9;

// Escapes RE2 reads but ECMAScript has not (bell, text anchors, any byte, quoting, Unicode
// classes): refused, where ECMAScript would refuse them too.
constexpr std::string_view kPerlOnlyEscapes = "aACEPQpz";

std::regex_error refusal(std::regex_constants::error_type why) { return std::regex_error(why); }

std::size_t countDigitsAt(const std::string& text, std::size_t at) {
    std::size_t digits = 0;
    while (at + digits < text.size() && std::isdigit(static_cast<unsigned char>(text[at + digits])) != 0) {
        ++digits;
    }
    if (digits > kMaximumCountDigits || (digits > 1 && text[at] == '0')) {
        return 0;
    }
    return digits;
}

// Whether "{" at `at` opens "{n}", "{n,}" or "{n,m}" as RE2 reads them. RE2 takes any other "{"
// as a literal character, which ECMAScript refuses.
bool opensCount(const std::string& name, std::size_t at) {
    std::size_t next = at + 1;
    const std::size_t least = countDigitsAt(name, next);
    if (least == 0) {
        return false;
    }
    next += least;
    if (next < name.size() && name[next] == ',') {
        ++next;
        next += countDigitsAt(name, next);
    }
    return next < name.size() && name[next] == '}';
}

// Throws for syntax that RE2 would read in another way than ECMAScript does. One pass, no
// recursion, whatever the name.
void refuseWhereGrammarsDiffer(const std::string& name) {
    bool inBracket = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const char c = name[at];
        const char next = at + 1 < name.size() ? name[at + 1] : '\0';
        if (c == '\\') {
            if (next != '\0' && kPerlOnlyEscapes.find(next) != std::string_view::npos) {
                throw refusal(std::regex_constants::error_escape);
            }
            // A back-reference in ECMAScript, an octal character code in RE2.
            if (next >= '1' && next <= '9') {
                throw refusal(std::regex_constants::error_backref);
            }
            if (next == 'x' && at + 2 < name.size() && name[at + 2] == '{') {
                throw refusal(std::regex_constants::error_escape);
            }
            ++at;  // the escaped character stands for itself or its class
        } else if (inBracket) {
            inBracket = c != ']';
        } else if (c == '[') {
            // "[]" matches nothing and "[^]" anything in ECMAScript; RE2 reads a "]" there as a member.
            const std::size_t first = at + (next == '^' ? 2 : 1);
            if (first < name.size() && name[first] == ']') {
                throw refusal(std::regex_constants::error_brack);
            }
            inBracket = true;
            at = first - 1;
        } else if (c == '(' && next == '?' && (at + 2 >= name.size() || name[at + 2] != ':')) {
            // Look-arounds RE2 cannot match; flags and named groups ECMAScript has not.
            throw refusal(std::regex_constants::error_paren);
        } else if (c == '{' && !opensCount(name, at)) {
            throw refusal(std::regex_constants::error_badbrace);
        }
    }
}

std::regex_constants::error_type refusalFor(RE2::ErrorCode code) {
    switch (code) {
        case RE2::ErrorBadEscape:
        case RE2::ErrorTrailingBackslash:
            return std::regex_constants::error_escape;
        case RE2::ErrorBadCharClass:
            return std::regex_constants::error_ctype;
        case RE2::ErrorBadCharRange:
            return std::regex_constants::error_range;
        case RE2::ErrorMissingBracket:
            return std::regex_constants::error_brack;
        case RE2::ErrorMissingParen:
        case RE2::ErrorUnexpectedParen:
        case RE2::ErrorBadPerlOp:
        case RE2::ErrorBadNamedCapture:
            return std::regex_constants::error_paren;
        case RE2::ErrorRepeatArgument:
        case RE2::ErrorRepeatOp:
            return std::regex_constants::error_badrepeat;
        case RE2::ErrorRepeatSize:
            return std::regex_constants::error_badbrace;
        case RE2::ErrorPatternTooLarge:
            return std::regex_constants::error_space;
        default:
            return std::regex_constants::error_complexity;
    }
}

// Bytes, not UTF-8: "." stands for one byte of the product name as it did with std::regex over
// char, and a name of any bytes is a pattern of its own, never an encoding error.
RE2::Options namePatternOptions() {
    RE2::Options options;
    options.set_encoding(RE2::Options::EncodingLatin1);
    options.set_case_sensitive(true);
    options.set_never_capture(true);
    options.set_log_errors(false);
    options.set_max_mem(kPatternMemoryBudget);
    return options;
}

const std::string& checkedName(const std::string& name) {
    if (name.size() > kMaximumDeviceNameLength) {
        throw refusal(std::regex_constants::error_space);
    }
    refuseWhereGrammarsDiffer(name);
    return name;
}

}  // namespace

DeviceNamePattern::DeviceNamePattern(const std::string& name) : pattern(checkedName(name), namePatternOptions()) {
    if (!pattern.ok()) {
        throw refusal(refusalFor(pattern.error_code()));
    }
}

bool DeviceNamePattern::matchesWhole(const std::string& productName) const {
    return RE2::FullMatch(productName, pattern);
}
