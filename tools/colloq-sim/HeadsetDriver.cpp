#include "HeadsetDriver.h"

#include <algorithm>

#include "HeadsetButton.h"
#include "vexilctl/VexilControl.h"
#include "vexilrt/Events.h"

namespace colloqsim {

namespace {

std::string refusal(const char* what, int32_t status) {
    return std::string(what) + ": " + vexilctl_status_text(status);
}

}  // namespace

std::string HeadsetDriver::clientDeviceId(const Headset& headset) {
    std::string name = headset.model;
    const auto dot = name.find('.');
    if (dot != std::string::npos) {
        name[dot] = '_';
    }
    return "AppleUSBAudioEngine:Brimquell:" + name;
}

const Headset* HeadsetDriver::find(const std::string& name) const {
    const auto found =
        std::find_if(headsets_.begin(), headsets_.end(), [&name](const Headset& h) { return h.name == name; });
    return found == headsets_.end() ? nullptr : &*found;
}

std::string HeadsetDriver::plug(Headset headset, const std::string& serial) {
    if (find(headset.name) != nullptr) {
        return "headset " + headset.name + " is plugged in already";
    }
    char path[VEXILCTL_PATH_BYTES] = {};
    int32_t status = vexilctl_make_headset_path(headset.productId, serial.c_str(), path, sizeof path);
    if (status != VEXILCTL_OK) {
        return refusal("no device path for that serial", status);
    }
    status = vexilctl_add_headset(path, headset.model.c_str(), headset.productId, headset.hasDisplay ? 1 : 0);
    if (status != VEXILCTL_OK) {
        return refusal("the runtime refused the headset", status);
    }
    headset.path = path;
    TimelineEvent event;
    event.direction = Direction::HeadsetToPlugin;
    event.subject = "headset";
    event.verb = "plugged";
    event.argument = headset.name;
    event.text = "plugged in " + headset.name + ": \"" + headset.model + "\" " + headset.path +
                 (headset.hasDisplay ? " (display)" : "");
    headsets_.push_back(std::move(headset));
    timeline_.record(std::move(event));
    return "";
}

std::string HeadsetDriver::unplug(const std::string& name) {
    const auto found =
        std::find_if(headsets_.begin(), headsets_.end(), [&name](const Headset& h) { return h.name == name; });
    if (found == headsets_.end()) {
        return "no headset is called " + name;
    }
    const int32_t status = vexilctl_remove_headset(found->path.c_str());
    if (status != VEXILCTL_OK) {
        return refusal("the runtime refused to unplug it", status);
    }
    TimelineEvent event;
    event.direction = Direction::HeadsetToPlugin;
    event.subject = "headset";
    event.verb = "unplugged";
    event.argument = name;
    event.text = "unplugged " + name + ": " + found->path;
    headsets_.erase(found);
    timeline_.record(std::move(event));
    return "";
}

std::string HeadsetDriver::send(const std::string& name, int32_t code, int32_t callId, const std::string& keys,
                                const std::string& what) {
    const Headset* headset = find(name);
    if (headset == nullptr) {
        return "no headset is called " + name;
    }
    TimelineEvent event;
    event.direction = Direction::HeadsetToPlugin;
    event.subject = "headset";
    event.verb = "pressed";
    event.argument = what;
    event.text = name + " " + what + ": " + callStateCodeName(code) + " call=" + std::to_string(callId) +
                 (keys.empty() ? "" : " keys=\"" + keys + "\"") + " device=" + headset->path;
    // Shown before it is sent: the plug-in's reaction may come at once.
    timeline_.record(std::move(event));
    const int32_t status = vexilctl_press_button(headset->path.c_str(), code, callId, keys.c_str());
    return status == VEXILCTL_OK ? "" : refusal("the runtime refused the report", status);
}

std::string HeadsetDriver::press(const std::string& name, const std::string& button, int32_t callId) {
    const std::optional<int32_t> code = buttonCode(button);
    if (!code) {
        return "no button " + button + " (buttons: " + buttonWords() + ")";
    }
    return send(name, *code, callId, "", "presses " + button);
}

std::string HeadsetDriver::keys(const std::string& name, const std::string& keys, int32_t callId) {
    if (keys.empty() || keys.size() >= VEXILCTL_KEYS_BYTES) {
        return "give 1 to " + std::to_string(VEXILCTL_KEYS_BYTES - 1) + " keys";
    }
    return send(name, CALL_STATE_DTMF_KEY, callId, keys, "keys " + keys);
}

std::string HeadsetDriver::dial(const std::string& name, const std::string& number) {
    const Headset* headset = find(name);
    if (headset == nullptr) {
        return "no headset is called " + name;
    }
    TimelineEvent event;
    event.direction = Direction::HeadsetToPlugin;
    event.subject = "headset";
    event.verb = "dialled";
    event.argument = number;
    event.text = name + " dials \"" + number + "\" device=" + headset->path;
    timeline_.record(std::move(event));
    const int32_t status = vexilctl_dial(headset->path.c_str(), number.c_str(), nullptr);
    return status == VEXILCTL_OK ? "" : refusal("the runtime refused the number", status);
}

bool HeadsetDriver::waitIdle(std::chrono::milliseconds timeout) const {
    return vexilctl_wait_idle(static_cast<int32_t>(timeout.count())) == VEXILCTL_OK;
}

}  // namespace colloqsim
