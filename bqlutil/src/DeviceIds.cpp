#include "bqlutil/DeviceIds.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "Export.h"

namespace Brimquell {
namespace {

constexpr std::size_t kMaximumIdDigits = 4;

// Device paths are ASCII by construction; comparing by hand keeps the host's locale out of it.
wchar_t asciiLower(wchar_t c) { return c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c; }

int hexDigitValue(wchar_t c) {
  const wchar_t lower = asciiLower(c);
  if (lower >= L'0' && lower <= L'9') {
    return lower - L'0';
  }
  if (lower >= L'a' && lower <= L'f') {
    return lower - L'a' + 10;
  }
  return -1;
}

bool markerAt(const std::wstring& text, std::size_t pos, std::wstring_view marker) {
  if (text.size() - pos < marker.size()) {
    return false;
  }
  for (std::size_t i = 0; i < marker.size(); ++i) {
    if (asciiLower(text[pos + i]) != marker[i]) {
      return false;
    }
  }
  return true;
}

// Finds the first `marker` (given in lower case, matched in any case) that is followed by a
// hexadecimal digit, and reads up to four digits after it.
bool findHexId(const std::wstring& text, std::wstring_view marker, uint16_t& id) {
  for (std::size_t pos = 0; pos < text.size(); ++pos) {
    if (!markerAt(text, pos, marker)) {
      continue;
    }
    unsigned value = 0;
    std::size_t digits = 0;
    for (std::size_t at = pos + marker.size(); at < text.size() && digits < kMaximumIdDigits;
         ++at, ++digits) {
      const int digit = hexDigitValue(text[at]);
      if (digit < 0) {
        break;
      }
      value = value * 16 + static_cast<unsigned>(digit);
    }
    if (digits > 0) {
      id = static_cast<uint16_t>(value);
      return true;
    }
  }
  return false;
}

}  // namespace

BQLUTIL_EXPORT bool get_vid_pid_from_device_path(const std::wstring& path, uint16_t* vid,
                                                 uint16_t* pid) {
  uint16_t foundVid = 0;
  uint16_t foundPid = 0;
  if (!findHexId(path, L"vid_", foundVid) || !findHexId(path, L"pid_", foundPid)) {
    return false;
  }
  if (vid != nullptr) {
    *vid = foundVid;
  }
  if (pid != nullptr) {
    *pid = foundPid;
  }
  return true;
}

}  // namespace Brimquell
