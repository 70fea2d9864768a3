#include "WideText.h"

#include <boost/locale/encoding_utf.hpp>

#include "vexilrt/Status.h"

namespace vexil {

namespace conv = boost::locale::conv;

std::string toUtf8(const std::wstring& text) {
    return conv::utf_to_utf<char>(text, conv::skip);
}

std::string toUtf8(const wchar_t* text) {
    return text == nullptr ? std::string() : toUtf8(std::wstring(text));
}

std::optional<std::wstring> fromUtf8(const char* text) {
    try {
        return conv::utf_to_utf<wchar_t>(std::string(text), conv::stop);
    } catch (const conv::conversion_error&) {
        return std::nullopt;
    }
}

int32_t copyToWideBuffer(const std::wstring& text, wchar_t* buffer, int32_t capacity) {
    if (buffer == nullptr || capacity <= 0) {
        return VEXIL_E_INVALID_ARG;
    }
    const auto room = static_cast<std::size_t>(capacity) - 1;
    const std::size_t copied = text.copy(buffer, room);
    buffer[copied] = L'\0';
    return copied < text.size() ? VEXIL_E_BUFFER_TOO_SMALL : VEXIL_OK;
}

namespace {

bool isContinuationByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

bool copyUtf8Truncated(const std::string& text, char* buffer, std::size_t capacity) {
    if (capacity == 0) {
        return text.empty();
    }
    std::size_t length = text.size();
    if (length > capacity - 1) {
        length = capacity - 1;
        // Never leave half a character behind.
        while (length > 0 && isContinuationByte(text[length])) {
            --length;
        }
    }
    text.copy(buffer, length);
    buffer[length] = '\0';
    return length == text.size();
}

}  // namespace vexil
