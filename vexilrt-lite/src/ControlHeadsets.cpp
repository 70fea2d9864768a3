// Control functions that plug headsets in and out and list them.
#include <cstdio>
#include <cstring>
#include <string>

#include "ControlSupport.h"
#include "Runtime.h"
#include "WideText.h"

using vexil::controlGuarded;
using vexil::Runtime;

namespace {

// "hid/vid_2f0c&pid_<4 lower-case hex>/": plain ASCII, so its bytes are its characters.
std::string headsetPathPrefix(uint16_t productId) {
    char prefix[32];
    std::snprintf(prefix, sizeof prefix, "hid/vid_%04x&pid_%04x/", static_cast<unsigned>(VEXILCTL_VENDOR_ID),
                  static_cast<unsigned>(productId));
    return prefix;
}

}  // namespace

extern "C" int32_t vexilctl_make_headset_path(uint16_t productId, const char* serial, char* buffer,
                                              int32_t capacity) {
    return controlGuarded([&]() -> int32_t {
        std::wstring wideSerial;
        const int32_t status = vexil::readText(serial, VEXILCTL_PATH_CHARS - 1, wideSerial);
        if (status != VEXILCTL_OK) {
            return status;
        }
        if (wideSerial.empty() || wideSerial.find(L'/') != std::wstring::npos || buffer == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        const std::string prefix = headsetPathPrefix(productId);
        if (prefix.size() + wideSerial.size() > VEXILCTL_PATH_CHARS - 1) {
            return VEXILCTL_E_TOO_LONG;
        }
        return vexil::writeText(prefix + serial, buffer, capacity);
    });
}

extern "C" int32_t vexilctl_add_headset(const char* path, const char* productName, uint16_t productId,
                                        int32_t hasDisplay) {
    return controlGuarded([&]() -> int32_t {
        vexil::Headset headset;
        int32_t status = vexil::readText(path, VEXILCTL_PATH_CHARS - 1, headset.path);
        if (status == VEXILCTL_OK) {
            status = vexil::readText(productName, VEXILCTL_PRODUCT_NAME_CHARS - 1, headset.productName);
        }
        if (status != VEXILCTL_OK) {
            return status;
        }
        if (headset.path.empty() || (hasDisplay != 0 && hasDisplay != 1)) {
            return VEXILCTL_E_INVALID_ARG;
        }
        headset.productId = productId;
        headset.hasDisplay = hasDisplay == 1;
        Runtime& runtime = Runtime::instance();
        const std::wstring added = headset.path;
        if (!runtime.headsets().add(std::move(headset))) {
            return VEXILCTL_E_ALREADY_EXISTS;
        }
        runtime.raise(vexil::DeviceStateEvent{runtime.generation(),
                                              vexil::makeDeviceStateArgs(DEVICE_STATE_ATTACHED, added)});
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_remove_headset(const char* path) {
    return controlGuarded([&]() -> int32_t {
        std::wstring removed;
        const int32_t status = vexil::readText(path, VEXILCTL_PATH_CHARS - 1, removed);
        if (status != VEXILCTL_OK) {
            return status;
        }
        Runtime& runtime = Runtime::instance();
        if (!runtime.headsets().remove(removed)) {
            return VEXILCTL_E_NOT_FOUND;
        }
        runtime.raise(vexil::DeviceStateEvent{runtime.generation(),
                                              vexil::makeDeviceStateArgs(DEVICE_STATE_REMOVED, removed)});
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_headset_count(int32_t* count) {
    return controlGuarded([&]() -> int32_t {
        if (count == nullptr) {
            return VEXILCTL_E_INVALID_ARG;
        }
        *count = static_cast<int32_t>(Runtime::instance().headsets().count());
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_headset_at(int32_t index, VexilCtlHeadset* headset) {
    return controlGuarded([&]() -> int32_t {
        if (headset == nullptr || index < 0) {
            return VEXILCTL_E_INVALID_ARG;
        }
        Runtime& runtime = Runtime::instance();
        const auto all = runtime.headsets().all();
        if (static_cast<std::size_t>(index) >= all.size()) {
            return VEXILCTL_E_NOT_FOUND;
        }
        const vexil::Headset& found = all[static_cast<std::size_t>(index)];
        const auto active = runtime.headsets().active();
        std::memset(headset, 0, sizeof *headset);
        vexil::copyUtf8Truncated(vexil::toUtf8(found.path), headset->path, sizeof headset->path);
        vexil::copyUtf8Truncated(vexil::toUtf8(found.productName), headset->productName,
                                 sizeof headset->productName);
        headset->productId = found.productId;
        headset->hasDisplay = found.hasDisplay ? 1 : 0;
        headset->isActive = active && active->path == found.path ? 1 : 0;
        return VEXILCTL_OK;
    });
}

extern "C" int32_t vexilctl_get_active_device(char* buffer, int32_t capacity) {
    return controlGuarded([&]() -> int32_t {
        if (buffer == nullptr || capacity <= 0) {
            return VEXILCTL_E_INVALID_ARG;
        }
        const auto active = Runtime::instance().headsets().active();
        if (!active) {
            buffer[0] = '\0';
            return VEXILCTL_E_NO_DEVICE;
        }
        return vexil::writeText(vexil::toUtf8(active->path), buffer, capacity);
    });
}
