// Writing and reading the text fields of the hub record.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <string>

// Copies `text` into a wide field, truncated so that the terminator always fits; null is empty.
template <std::size_t Size>
void CopyWideField(wchar_t (&field)[Size], const wchar_t* text) {
    std::size_t length = 0;
    if (text != nullptr) {
        while (length + 1 < Size && text[length] != L'\0') {
            ++length;
        }
        std::wmemcpy(field, text, length);
    }
    field[length] = L'\0';
}

// Copies `text` into a narrow field with bounded-copy semantics: at most Size bytes, the rest of the
// field zeroed; a text of Size or more bytes leaves no terminator. Null is empty.
template <std::size_t Size>
void CopyNarrowField(char (&field)[Size], const char* text) {
    std::memset(field, 0, Size);
    if (text != nullptr) {
        std::size_t length = 0;
        while (length < Size && text[length] != '\0') {
            ++length;
        }
        std::memcpy(field, text, length);
    }
}

// The text of a wide field, up to its terminator or its end.
template <std::size_t Size>
std::wstring ReadWideField(const wchar_t (&field)[Size]) {
    return std::wstring(field, std::find(field, field + Size, L'\0'));
}

// The text of a narrow field, up to its terminator or its end.
template <std::size_t Size>
std::string ReadNarrowField(const char (&field)[Size]) {
    return std::string(field, std::find(field, field + Size, '\0'));
}
