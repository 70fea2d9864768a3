// The plug-in singleton for one test, its local log in a folder of its own (the application
// data folders point there), released at the end of the scope.
#pragma once

#include <vector>

#include "bqltest/LocalLog.h"
#include "bqltest/ScopedEnvironment.h"
#include "bqltest/TempDirectory.h"
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

    std::vector<bqltest::LocalLogEntry> localLog() const;

private:
    bqltest::TempDirectory folder_;
    bqltest::ScopedEnvironment dataHome_;
    bqltest::ScopedEnvironment configDirs_;
    BQLColloqPlugin* plugin_;
};
