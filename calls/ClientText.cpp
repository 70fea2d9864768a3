#include "calls/ClientText.h"

#include <cstring>

namespace clienttext {

std::size_t fieldLength(const char* field, std::size_t fieldSize) {
    const void* end = std::memchr(field, '\0', fieldSize);
    return end ? static_cast<std::size_t>(static_cast<const char*>(end) - field) : fieldSize;
}

std::string fromField(const char* field, std::size_t fieldSize) {
    return std::string(field, fieldLength(field, fieldSize));
}

std::wstring widenBytes(const std::string& text) {
    std::wstring wide;
    wide.reserve(text.size());
    for (char byte : text) {
        wide.push_back(static_cast<wchar_t>(static_cast<signed char>(byte)));
    }
    return wide;
}

}  // namespace clienttext
