// Loads a plug-in the way the client does: dlopen with RTLD_NOW | RTLD_LOCAL, its two exported
// entry points resolved up front, initialize and uninitialize called on the caller's thread,
// dlclose at the end. One PluginLibrary is driven from one thread at a time.
#pragma once

#include <string>

#include "colloq/AccessoryAPI.h"
#include "hostharness/HarnessStatus.h"

namespace hostharness {

class PluginLibrary {
public:
    PluginLibrary() = default;
    // Uninitializes (if initialized) and unloads (if loaded).
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    // LoadFailed when the file cannot be loaded, EntryPointMissing when it lacks initialize or
    // uninitialize (the library is closed again); lastError() then says why.
    HarnessStatus load(const std::string& path);
    // Calls the plug-in's initialize(entry); its return value goes to *result (may be null).
    HarnessStatus initialize(accessoryAPIEntryPoint_t entry, int* result = nullptr);
    // Calls the plug-in's uninitialize(); its return value goes to *result (may be null).
    HarnessStatus uninitialize(int* result = nullptr);
    // Uninitializes first if needed. A callback table the plug-in left registered with the
    // harness is dropped, so that firing it afterwards reports NotRegistered instead of calling
    // into unmapped code.
    HarnessStatus unload();

    bool isLoaded() const { return handle_ != nullptr; }
    bool isInitialized() const { return initialized_; }
    // The reason for the last failed load, "" after a successful one.
    const std::string& lastError() const { return lastError_; }

private:
    void* handle_ = nullptr;
    Accessory_PluginInitialize_t initialize_ = nullptr;
    Accessory_PluginUninitialize_t uninitialize_ = nullptr;
    bool initialized_ = false;
    std::string lastError_;
};

}  // namespace hostharness
