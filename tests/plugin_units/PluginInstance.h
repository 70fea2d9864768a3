// The plug-in singleton for one test, its local log in a folder of its own (the application
// data folders point there), released at the end of the scope.
#pragma once

#include <vector>

#include "LocalLog.h"
#include "ScopedEnvironment.h"
#include "TempDirectory.h"
#include "plugin/BQLColloqPlugin.h"

class PluginInstance {
public:
    PluginInstance();
    ~PluginInstance();
    PluginInstance(const PluginInstance&) = delete;
    PluginInstance& operator=(const PluginInstance&) = delete;

    // False when getInstance gave no instance.
    bool exists() const { return plugin_ != nullptr; }
    BQLColloqPlugin& plugin() { return *plugin_; }

    // Binds the fake client's logger; the client refuses the callbacks, so binding ends there
    // with -1 and starts nothing.
    int bindClientLogger();

    std::vector<LocalLogEntry> localLog() const;

private:
    TempDirectory folder_;
    ScopedEnvironment dataHome_;
    ScopedEnvironment configDirs_;
    BQLColloqPlugin* plugin_;
};
