// UTF-32 <-> UTF-8 with U+FFFD for anything malformed. Boost.Locale's converters either skip or
// throw on bad input, and its decoder swallows the byte after a broken lead byte, so the
// decoding is done here, following the Unicode "maximal subpart" practice: each broken
// sequence becomes one U+FFFD and decoding resumes at the first byte that cannot continue it.
#include "bqlutil/Converter.h"

#include <cstddef>
#include <exception>
#include <string>

#include "Export.h"

namespace Converter {
namespace {

static_assert(sizeof(wchar_t) == 4, "wide strings carry UTF-32");

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLargestCodePoint = 0x10FFFF;
constexpr char32_t kFirstSurrogate = 0xD800;
constexpr char32_t kLastSurrogate = 0xDFFF;

bool isScalarValue(char32_t codePoint) {
  return codePoint <= kLargestCodePoint &&
         (codePoint < kFirstSurrogate || codePoint > kLastSurrogate);
}

void appendUtf8(std::string& out, char32_t codePoint) {
  const auto byte = [](char32_t bits) {
    return static_cast<char>(static_cast<unsigned char>(bits));
  };
  if (codePoint < 0x80) {
    out += byte(codePoint);
  } else if (codePoint < 0x800) {
    out += byte(0xC0 | (codePoint >> 6));
    out += byte(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    out += byte(0xE0 | (codePoint >> 12));
    out += byte(0x80 | ((codePoint >> 6) & 0x3F));
    out += byte(0x80 | (codePoint & 0x3F));
  } else {
    out += byte(0xF0 | (codePoint >> 18));
    out += byte(0x80 | ((codePoint >> 12) & 0x3F));
    out += byte(0x80 | ((codePoint >> 6) & 0x3F));
    out += byte(0x80 | (codePoint & 0x3F));
  }
}

// What a lead byte announces: how many continuation bytes follow, the payload bits it carries,
// and the range the first continuation byte must fall in. The narrowed ranges after E0, ED, F0
// and F4 exclude over-long forms, surrogates and values beyond U+10FFFF.
struct LeadByte {
  int continuationBytes;
  char32_t payload;
  unsigned firstLow;
  unsigned firstHigh;
};

constexpr unsigned kContinuationLow = 0x80;
constexpr unsigned kContinuationHigh = 0xBF;

// False for bytes that cannot start a sequence: continuation bytes, C0, C1 and F5 to FF.
bool describeLeadByte(unsigned char lead, LeadByte& info) {
  if (lead >= 0xC2 && lead <= 0xDF) {
    info = {1, lead & 0x1Fu, kContinuationLow, kContinuationHigh};
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    info = {2, lead & 0x0Fu, lead == 0xE0 ? 0xA0u : kContinuationLow,
            lead == 0xED ? 0x9Fu : kContinuationHigh};
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    info = {3, lead & 0x07u, lead == 0xF0 ? 0x90u : kContinuationLow,
            lead == 0xF4 ? 0x8Fu : kContinuationHigh};
  } else {
    return false;
  }
  return true;
}

// Decodes the sequence at `pos` and moves `pos` past the bytes it used.
char32_t decodeOne(const std::string& text, std::size_t& pos) {
  const auto lead = static_cast<unsigned char>(text[pos++]);
  if (lead < 0x80) {
    return lead;
  }
  LeadByte info{};
  if (!describeLeadByte(lead, info)) {
    return kReplacement;
  }
  char32_t codePoint = info.payload;
  unsigned low = info.firstLow;
  unsigned high = info.firstHigh;
  for (int i = 0; i < info.continuationBytes; ++i) {
    if (pos == text.size()) {
      return kReplacement;
    }
    const auto next = static_cast<unsigned char>(text[pos]);
    if (next < low || next > high) {
      return kReplacement;
    }
    codePoint = (codePoint << 6) | (next & 0x3Fu);
    ++pos;
    low = kContinuationLow;
    high = kContinuationHigh;
  }
  return codePoint;
}

}  // namespace

BQLUTIL_EXPORT std::string ConvertToString(const std::wstring& text) {
  try {
    std::string out;
    out.reserve(text.size());
    for (const wchar_t unit : text) {
      const auto codePoint = static_cast<char32_t>(unit);
      appendUtf8(out, isScalarValue(codePoint) ? codePoint : kReplacement);
    }
    return out;
  } catch (const std::exception&) {
    return std::string();
  }
}

BQLUTIL_EXPORT std::wstring ConvertToWString(const std::string& text) {
  try {
    std::wstring out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
      out += static_cast<wchar_t>(decodeOne(text, pos));
    }
    return out;
  } catch (const std::exception&) {
    return std::wstring();
  }
}

BQLUTIL_EXPORT std::string ConvertToHexFormattedStr(uint16_t value) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text(4, '0');
  unsigned remaining = value;
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit) {
    *digit = kDigits[remaining & 0xFu];
    remaining >>= 4;
  }
  return text;
}

}  // namespace Converter
