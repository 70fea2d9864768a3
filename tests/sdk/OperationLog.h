// Remembers which operation of a test implementation ran, with its arguments, as one line such
// as "setPluginStatus(7,2)". Pointers print as addresses, wide texts as their ASCII characters.
#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace sdktest {

inline void describe(std::ostream& out, const wchar_t* text) {
    if (text == nullptr) {
        out << "null";
        return;
    }
    out << '"';
    for (const wchar_t* c = text; *c != L'\0'; ++c) {
        out << static_cast<char>(*c);
    }
    out << '"';
}

inline void describe(std::ostream& out, const void* pointer) { out << pointer; }
inline void describe(std::ostream& out, bool value) { out << (value ? "true" : "false"); }
inline void describe(std::ostream& out, int32_t value) { out << value; }

class OperationLog {
public:
    template <typename... Args>
    void record(const char* operation, const Args&... args) {
        std::ostringstream line;
        line << operation << '(';
        bool first = true;
        ((line << (first ? "" : ","), describe(line, args), first = false), ...);
        static_cast<void>(first);
        line << ')';
        lines_.push_back(line.str());
    }

    std::string last() const { return lines_.empty() ? std::string() : lines_.back(); }
    std::size_t size() const { return lines_.size(); }

private:
    std::vector<std::string> lines_;
};

// The text a pointer argument appears as in an OperationLog line.
inline std::string addressText(const void* pointer) {
    std::ostringstream text;
    text << pointer;
    return text.str();
}

}  // namespace sdktest
