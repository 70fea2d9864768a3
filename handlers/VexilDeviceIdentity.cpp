// The direct handler's device lookups, all by walking the runtime's device list.
#include <cctype>
#include <cstddef>
#include <regex>
#include <string>

#include "bqlutil/Converter.h"
#include "bqlutil/LogWriter.h"
#include "handlers/BQLColloqVexil.h"
#include "handlers/DeviceIdentity.h"
#include "handlers/VexilDeviceWalk.h"

using vexilwalk::DeviceText;

namespace {

constexpr int32_t kRefreshBeforeDeviceRead = 1;

// The client's name is matched as a pattern, and a name such as "(.*)*(.*)*(.*)*x" would make a
// backtracking matcher run for ages on the client's thread. libstdc++ can match in time
// polynomial in the name and the product name instead; names with back-references are then
// refused like other invalid patterns. Other libraries match as they always do.
#if defined(__GLIBCXX__)
constexpr std::regex::flag_type kNamePatternSyntax = std::regex::ECMAScript | std::regex_constants::__polynomial;
#else
constexpr std::regex::flag_type kNamePatternSyntax = std::regex::ECMAScript;
#endif

// libstdc++ reads the digits of a repetition count or a back-reference without a bound, and a
// long run overflows inside the library. A count or reference of this many digits never makes a
// usable pattern (too many states, or no such group), so such names are refused before it reads
// them. A "{" inside a bracket expression is taken for a count too: no device name holds one.
constexpr std::size_t kMaximumCountDigits = 9;

std::size_t digitsAt(const std::string& text, std::size_t at) {
    std::size_t digits = 0;
    while (at + digits < text.size() && std::isdigit(static_cast<unsigned char>(text[at + digits])) != 0) {
        ++digits;
    }
    return digits;
}

bool hasOverlongCount(const std::string& name) {
    bool inCount = false;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const char c = name[at];
        if (c == '\\') {
            if (digitsAt(name, at + 1) > kMaximumCountDigits) {
                return true;
            }
            ++at;  // the escaped character is taken literally
            continue;
        }
        if (c == '{') {
            inCount = true;
        } else if (c == '}') {
            inCount = false;
        }
        if (inCount && (c == '{' || c == ',') && digitsAt(name, at + 1) > kMaximumCountDigits) {
            return true;
        }
    }
    return false;
}

std::regex namePattern(const std::string& name) {
    if (hasOverlongCount(name)) {
        throw std::regex_error(std::regex_constants::error_badbrace);
    }
    return std::regex(name, kNamePatternSyntax);
}

}  // namespace

ISessionManagerInt* BQLColloqVexil::internalSessionManager() {
    std::shared_lock<std::shared_mutex> guard(connectionLock);
    return sessionManagerInt;
}

void BQLColloqVexil::setActiveDevice(const char* pid) {
    ISessionManagerInt* manager = internalSessionManager();
    if (manager == nullptr) {
        return;
    }
    manager->refreshDevices(kRefreshBeforeDeviceRead);
    const std::string pidText = pid ? pid : "";
    const std::wstring widePid = Converter::ConvertToWString(pidText);
    const std::string notFound =
        "BQLColloqVexil::setActiveVexilDevice( ) the device with PID " + pidText + " was not found";
    const bool matched = vexilwalk::walkDevices(manager, [&](IDevice& device) {
        const std::wstring path = vexilwalk::readWide(device, DeviceText::Path);
        if (path.find(widePid) == std::wstring::npos) {
            return false;  // an empty product id matches the first device
        }
        const int32_t result = manager->setActiveDevice(path.c_str());
        const std::string line = "BQLColloqVexil::setActiveDevice set active device with PID " + pidText +
                                 " returns " + std::to_string(result);
        LogWriter_debug(line.c_str(), "setActiveDevice", "<>");
        if (result == VEXIL_E_REFUSED) {
            LogWriter_debug(notFound.c_str(), "setActiveDevice", "<>");
        }
        return true;
    });
    if (!matched) {
        LogWriter_debug(notFound.c_str(), "setActiveDevice", "<>");
    }
}

std::string BQLColloqVexil::GetDeviceNameFromVexilPath(std::string path) {
    std::string name;
    const bool matched = vexilwalk::walkDevices(internalSessionManager(), [&](IDevice& device) {
        if (vexilwalk::readNarrow(device, DeviceText::Path) != path) {
            return false;
        }
        name = vexilwalk::readNarrow(device, DeviceText::ProductName);
        return true;
    });
    if (!matched) {
        const std::string line = "BQLColloqVexil::GetDeviceNameFromVexilPath device with path " + path + " was not found";
        LogWriter_debug(line.c_str(), "GetDeviceNameFromVexilPath", "<>");
    }
    return name;
}

std::string BQLColloqVexil::GetPathFromColloqId(const char* colloqId) {
    const std::string name = Converter::ConvertToString(Converter::ConvertToWString(GetNameFromColloqPath(colloqId)));
    std::string path;
    // The name is a pattern ("." matches the "_" or "-" the client replaced); one that is not a
    // valid pattern throws std::regex_error to the caller.
    const bool matched = vexilwalk::walkDevices(internalSessionManager(), [&](IDevice& device) {
        const std::string productName = vexilwalk::readNarrow(device, DeviceText::ProductName);
        if (!std::regex_match(productName, namePattern(name))) {
            return false;
        }
        path = vexilwalk::readNarrow(device, DeviceText::Path);
        const std::string line = "BQLColloqVexil::GetPidFromColloqPath found device '" + name + "' has path " + path;
        LogWriter_debug(line.c_str(), "GetPathFromColloqId", "<>");
        return true;
    });
    if (!matched) {
        const std::string line = "BQLColloqVexil::GetPidFromColloqPath device with name " + name + " was not found";
        LogWriter_debug(line.c_str(), "GetPathFromColloqId", "<>");
    }
    return path;
}
