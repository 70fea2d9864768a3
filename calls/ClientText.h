// Reading texts out of the client's fixed-size record fields.
#pragma once

#include <cstddef>
#include <string>

namespace clienttext {

// Length of the field's text: up to its terminator, or the whole field when it has none.
std::size_t fieldLength(const char* field, std::size_t fieldSize);

// The field's text up to its terminator, or the whole field when it has none: a field the
// client filled to the last byte is cut at its end, never read beyond it.
std::string fromField(const char* field, std::size_t fieldSize);

// Widens byte by byte, without any character-set conversion: each (signed) char becomes one
// wchar_t, so bytes at or above 0x80 become negative wide values.
std::wstring widenBytes(const std::string& text);

}  // namespace clienttext
