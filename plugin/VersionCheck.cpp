// Whether the client can switch its active audio device at our request. Decided from our own
// version constant on purpose: nothing is asked of the client.
#include "plugin/BQLColloqPlugin.h"
#include "plugin/Tokenize.h"

int BQLColloqPlugin::checkColloqVersion() {
    return checkVersionSupportsDeviceChange(kPluginVersion);
}

int BQLColloqPlugin::checkVersionSupportsDeviceChange(const char* version) {
    int major = 0;
    int minor = 0;
    int build = 0;
    int revision = 0;
    const int parsed = TokenizeVersion(major, minor, build, revision, version);
    if (parsed != 0) {
        return parsed;
    }
    // The two leading numbers are compared independently, not as an ordered pair.
    if (major > 9 || minor >= 6) {
        canChangeDevice.exchange(true);
    } else {
        WriteLog(ACCESSORY_LOG_TRACE,
                 "Colloq does not support changing of activeDevice from plugin side. Colloq version '%s'",
                 version);
    }
    return 0;
}
