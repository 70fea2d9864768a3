#include "PluginInstance.h"

#include "FakeClient.h"

PluginInstance::PluginInstance()
    : dataHome_("XDG_DATA_HOME", folder_.path().string()),
      configDirs_("XDG_CONFIG_DIRS", folder_.path().string()),
      plugin_(BQLColloqPlugin::getInstance()) {
    fakeclient::clearLog();
}

PluginInstance::~PluginInstance() {
    if (plugin_ != nullptr) {
        BQLColloqPlugin::getInstance()->Release();
    }
}

int PluginInstance::bindClientLogger() { return plugin_->initializeColloqPoints(&fakeclient::entryPoint); }

std::vector<bqltest::LocalLogEntry> PluginInstance::localLog() const {
    return bqltest::readLocalLog(folder_.path() / "Brimquell" / "logs" / "Vexil_Colloq.log");
}
