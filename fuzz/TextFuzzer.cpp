// Arbitrary texts through the plug-in's splitting of versions and identifiers (Tokenize,
// TokenizeVersion), the utility library's device-path parser and its text conversions, and the
// hub handler's reading of a product id. The first byte chooses how many of the following
// bytes are delimiters; the rest is the text.
// Properties that hold for every input are checked, not just the absence of crashes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "bqlutil/Converter.h"
#include "bqlutil/DeviceIds.h"
#include "hubproxy/DevicePid.h"
#include "plugin/Tokenize.h"

namespace {

constexpr std::size_t kMaximumDelimiters = 4;

void check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "text property broken: %s\n", what);
        std::abort();
    }
}

void checkTokenize(const std::string& text, const std::string& delimiters) {
    const std::vector<std::string> tokens = Tokenize(text, delimiters);
    std::string joined;
    for (const std::string& token : tokens) {
        check(!token.empty(), "an empty token");
        check(token.find_first_of(delimiters) == std::string::npos, "a token holds a delimiter");
        joined += token;
    }
    std::string kept;
    for (char c : text) {
        if (delimiters.find(c) == std::string::npos) {
            kept.push_back(c);
        }
    }
    check(joined == kept, "tokens are not the text without its delimiters");
}

void checkTokenizeVersion(const std::string& text) {
    int parts[4] = {-7, -7, -7, -7};
    try {
        const int result = TokenizeVersion(parts[0], parts[1], parts[2], parts[3], text);
        const std::size_t count = Tokenize(text, ".").size();
        check(result == (count == 4 ? 0 : -1), "the result does not follow the number of parts");
        if (result != 0) {
            check(parts[0] == -7 && parts[1] == -7 && parts[2] == -7 && parts[3] == -7,
                  "a refused version changed its outputs");
        }
    } catch (const std::invalid_argument&) {
        // A part without leading digits: the documented outcome.
    } catch (const std::out_of_range&) {
        // A part beyond int: the documented outcome.
    }
}

bool isScalarValue(uint32_t unit) { return unit <= 0x10FFFF && (unit < 0xD800 || unit > 0xDFFF); }

void checkConversions(const std::string& text, const uint8_t* data, std::size_t size) {
    const std::wstring wide = Converter::ConvertToWString(text);
    for (wchar_t unit : wide) {
        check(isScalarValue(static_cast<uint32_t>(unit)), "decoding gave a value that is no character");
    }
    // Whatever was decoded encodes and decodes to itself.
    check(Converter::ConvertToWString(Converter::ConvertToString(wide)) == wide, "a decoded text does not round-trip");

    // The same bytes read as 32-bit units, as a hub record's wide fields carry them.
    std::wstring units(size / sizeof(wchar_t), L'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(wchar_t));
    const std::wstring back = Converter::ConvertToWString(Converter::ConvertToString(units));
    check(back.size() == units.size(), "encoding lost or added characters");
    for (std::size_t i = 0; i < units.size(); ++i) {
        const bool valid = isScalarValue(static_cast<uint32_t>(units[i]));
        check(back[i] == (valid ? units[i] : L'\uFFFD'), "a character did not survive encoding");
    }

    if (size >= 2) {
        const uint16_t value = static_cast<uint16_t>(data[0] | (data[1] << 8));
        const std::string hex = Converter::ConvertToHexFormattedStr(value);
        check(hex.size() == 4 && std::strtoul(hex.c_str(), nullptr, 16) == value, "hexadecimal text is wrong");
    }
}

void checkDevicePath(const std::wstring& path) {
    uint16_t vendorId = 0x1111;
    uint16_t productId = 0x2222;
    const bool parsed = Brimquell::get_vid_pid_from_device_path(path, &vendorId, &productId);
    if (!parsed) {
        check(vendorId == 0x1111 && productId == 0x2222, "a path that is refused changed the ids");
    }
    (void)Brimquell::get_vid_pid_from_device_path(path, nullptr, nullptr);
}

// The product id the hub handler reads out of a client device identifier.
void checkPidText(const std::string& text) {
    const std::string pid = hidal_get_pid(text);
    check(pid.find_first_not_of("0123456789abcdef") == std::string::npos, "a product id holds a non-digit");
    check(pid.empty() || text.find("pid_" + pid) != std::string::npos, "a product id is not in the text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::size_t delimiterCount = std::min<std::size_t>(data[0] % (kMaximumDelimiters + 1), size - 1);
    const std::string delimiters(reinterpret_cast<const char*>(data) + 1, delimiterCount);
    const std::string text(reinterpret_cast<const char*>(data) + 1 + delimiterCount, size - 1 - delimiterCount);

    checkTokenize(text, delimiters.empty() ? std::string(".") : delimiters);
    checkTokenizeVersion(text);
    checkConversions(text, data, size);
    checkDevicePath(Converter::ConvertToWString(text));
    checkPidText(text);
    return 0;
}
