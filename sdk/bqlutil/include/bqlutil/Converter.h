// Text conversions between the runtime's wide strings (UTF-32) and byte strings (UTF-8).
#pragma once

#include <cstdint>
#include <string>

namespace Converter {

// UTF-32 to UTF-8. Invalid code points become U+FFFD; never throws.
std::string ConvertToString(const std::wstring& text);

// UTF-8 to UTF-32. Invalid sequences become U+FFFD; never throws.
std::wstring ConvertToWString(const std::string& text);

// Four upper-case hexadecimal digits, no prefix: 0xAC27 gives "AC27".
std::string ConvertToHexFormattedStr(uint16_t value);

}  // namespace Converter
