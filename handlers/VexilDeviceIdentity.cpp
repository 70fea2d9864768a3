// The direct handler's device lookups, all by walking the runtime's device list.
#include <optional>
#include <string>

#include "bqlutil/Converter.h"
#include "bqlutil/LogWriter.h"
#include "handlers/BQLColloqVexil.h"
#include "handlers/DeviceIdentity.h"
#include "handlers/DeviceNamePattern.h"
#include "handlers/VexilDeviceWalk.h"

using vexilwalk::DeviceText;

namespace {

constexpr int32_t kRefreshBeforeDeviceRead = 1;

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
    // valid pattern throws std::regex_error to the caller. It is compiled at the first device,
    // so a walk that finds none reports "not found" for any name.
    std::optional<DeviceNamePattern> pattern;
    const bool matched = vexilwalk::walkDevices(internalSessionManager(), [&](IDevice& device) {
        const std::string productName = vexilwalk::readNarrow(device, DeviceText::ProductName);
        if (!pattern) {
            pattern.emplace(name);
        }
        if (!pattern->matchesWhole(productName)) {
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
