#include "hostharness/PluginLibrary.h"

#include <dlfcn.h>

#include "hostharness/HostHarness.h"

namespace hostharness {

namespace {

std::string lastDlError(const char* fallback) {
    const char* message = dlerror();
    return message != nullptr ? message : fallback;
}

// dlsym hands out data pointers; the exported entry points are functions.
template <typename Function>
Function resolve(void* handle, const char* name) {
    return reinterpret_cast<Function>(dlsym(handle, name));
}

}  // namespace

PluginLibrary::~PluginLibrary() { unload(); }

HarnessStatus PluginLibrary::load(const std::string& path) {
    if (handle_ != nullptr) {
        return HarnessStatus::AlreadyLoaded;
    }
    dlerror();
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        lastError_ = lastDlError("dlopen failed");
        return HarnessStatus::LoadFailed;
    }
    const auto initialize = resolve<Accessory_PluginInitialize_t>(handle, "initialize");
    const auto uninitialize = resolve<Accessory_PluginUninitialize_t>(handle, "uninitialize");
    if (initialize == nullptr || uninitialize == nullptr) {
        lastError_ = std::string(path) + ": does not export " + (initialize == nullptr ? "initialize" : "uninitialize");
        dlclose(handle);
        return HarnessStatus::EntryPointMissing;
    }
    handle_ = handle;
    initialize_ = initialize;
    uninitialize_ = uninitialize;
    lastError_.clear();
    return HarnessStatus::Ok;
}

HarnessStatus PluginLibrary::initialize(accessoryAPIEntryPoint_t entry, int* result) {
    if (handle_ == nullptr) {
        return HarnessStatus::NotLoaded;
    }
    if (entry == nullptr) {
        return HarnessStatus::NullArgument;
    }
    if (initialized_) {
        return HarnessStatus::AlreadyInitialized;
    }
    const int answer = initialize_(entry);
    initialized_ = true;
    if (result != nullptr) {
        *result = answer;
    }
    return HarnessStatus::Ok;
}

HarnessStatus PluginLibrary::uninitialize(int* result) {
    if (handle_ == nullptr) {
        return HarnessStatus::NotLoaded;
    }
    if (!initialized_) {
        return HarnessStatus::NotInitialized;
    }
    const int answer = uninitialize_();
    initialized_ = false;
    if (result != nullptr) {
        *result = answer;
    }
    return HarnessStatus::Ok;
}

HarnessStatus PluginLibrary::unload() {
    if (handle_ == nullptr) {
        return HarnessStatus::NotLoaded;
    }
    if (initialized_) {
        uninitialize();
    }
    HostHarness::instance().callbacks().forgetIfInside(reinterpret_cast<const void*>(initialize_));
    dlclose(handle_);
    handle_ = nullptr;
    initialize_ = nullptr;
    uninitialize_ = nullptr;
    return HarnessStatus::Ok;
}

}  // namespace hostharness
