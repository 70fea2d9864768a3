// The plug-in's two logs: the local file log of the utility library, configured once per
// instance, and the client's log, reached through the logger table once bound.
#include <string>

#include "bqlutil/LogWriter.h"
#include "bqlutil/PathUtils.h"
#include "plugin/BQLColloqPlugin.h"
#include "plugin/ClientLogText.h"

namespace {

constexpr const char* kLogDirectorySuffix = "/Brimquell/logs";
constexpr const char* kLogConfigurationSuffix = "/Brimquell/VexilRT/ColloqPlugin/Vexil_Colloq.log4cxx";
constexpr const char* kLoggerName = "Vexil_Colloq";

}  // namespace

void BQLColloqPlugin::InitializeLog() {
    std::string logDirectory;
    std::string configuration;
    // Without both folders the library still gets whatever the fetches left: its fallback.
    if (Brimquell::PathUtils::getUserAppDataDirectory(logDirectory) == 0 &&
        Brimquell::PathUtils::getCommonAppDataDirectory(configuration) == 0) {
        logDirectory += kLogDirectorySuffix;
        configuration += kLogConfigurationSuffix;
    }
    LogWriter_init(configuration.c_str(), logDirectory.c_str(), kLoggerName);
}

void BQLColloqPlugin::WriteLog(Accessory_LogMsg_Severity severity, const char* format, ...) {
    Accessory_LoggerAPI_v1_0_t* api = loggerAPI.load();
    ACCLogger_t* handle = loggerHandle.load();
    if (api == nullptr || handle == nullptr || api->log == nullptr) {
        return;
    }
    const std::string line = clientLogLine(pluginVersion.load(), clientLogMessage(format));
    api->log(handle, severity, line.c_str());
}

