#include "NameHeadsets.h"

#include <thread>

#include "hostharness/HostileDeviceNames.h"
#include "vexilctl/VexilControl.h"

namespace colloqvalidate {

namespace {

using namespace std::chrono_literals;

// The runtime changes its active device inside the plug-in's call; a plug-in that hands the
// change to another thread gets it seen on the next look.
constexpr auto kActivePoll = 2ms;

std::string refusal(const std::string& what, int32_t status) { return what + ": " + vexilctl_status_text(status); }

}  // namespace

NameHeadsets::NameHeadsets() {
    // Product ids whose hex text appears in no other part of either path: a plug-in may find a
    // device by its product id within the path.
    headsets_[0] = {"Model 40", 0x0b40, "NAMES1", ""};
    headsets_[1] = {"Model 70", 0x0b70, "NAMES2", ""};
}

std::string NameHeadsets::plug() {
    for (const int index : {1, 0}) {
        NameHeadset& headset = headsets_[static_cast<std::size_t>(index)];
        char path[VEXILCTL_PATH_BYTES] = {};
        int32_t status = vexilctl_make_headset_path(headset.productId, headset.serial.c_str(), path, sizeof path);
        if (status != VEXILCTL_OK) {
            return refusal("no device path for serial " + headset.serial, status);
        }
        status = vexilctl_add_headset(path, headset.productName.c_str(), headset.productId, 1);
        if (status != VEXILCTL_OK) {
            return refusal("the runtime refused " + headset.productName + " at " + path, status);
        }
        headset.path = path;
        plugged_[static_cast<std::size_t>(index)] = true;
    }
    return "";
}

void NameHeadsets::unplug() {
    for (std::size_t index = 0; index < headsets_.size(); ++index) {
        if (plugged_[index]) {
            vexilctl_remove_headset(headsets_[index].path.c_str());
            plugged_[index] = false;
        }
    }
}

std::string NameHeadsets::clientIdentifier(int number) const {
    return hostharness::clientDeviceIdentifier(headset(number).productName);
}

int NameHeadsets::inactiveNumber() const { return activePath() == headset(1).path ? 2 : 1; }

std::string NameHeadsets::activePath() {
    char path[VEXILCTL_PATH_BYTES] = {};
    return vexilctl_get_active_device(path, sizeof path) == VEXILCTL_OK ? std::string(path) : std::string();
}

bool NameHeadsets::waitUntilActive(int number, std::chrono::milliseconds timeout, std::string* lastSeen) const {
    const std::string& wanted = headset(number).path;
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        *lastSeen = activePath();
        if (*lastSeen == wanted) {
            return true;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(kActivePoll);
    }
}

}  // namespace colloqvalidate
