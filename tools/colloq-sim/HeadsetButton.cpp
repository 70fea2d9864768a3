#include "HeadsetButton.h"

#include "vexilrt/Events.h"

namespace colloqsim {

namespace {

struct Button {
    const char* word;
    int32_t code;
};

constexpr Button kButtons[] = {
    {"answer", CALL_STATE_ACCEPT_CALL}, {"end", CALL_STATE_TERMINATE_CALL}, {"hold", CALL_STATE_HOLD_CALL},
    {"resume", CALL_STATE_RESUME_CALL}, {"mute", CALL_STATE_MUTEON},         {"unmute", CALL_STATE_MUTEOFF},
    {"reject", CALL_STATE_REJECT_CALL}, {"select", 28},
};

}  // namespace

std::optional<int32_t> buttonCode(const std::string& button) {
    for (const Button& known : kButtons) {
        if (button == known.word) {
            return known.code;
        }
    }
    return std::nullopt;
}

const char* buttonWords() { return "answer end reject hold resume mute unmute select"; }

std::string callStateCodeName(int32_t code) {
    const char* name = nullptr;
    switch (code) {
    case CALL_STATE_ACCEPT_CALL: name = "CALL_STATE_ACCEPT_CALL"; break;
    case CALL_STATE_TERMINATE_CALL: name = "CALL_STATE_TERMINATE_CALL"; break;
    case CALL_STATE_HOLD_CALL: name = "CALL_STATE_HOLD_CALL"; break;
    case CALL_STATE_RESUME_CALL: name = "CALL_STATE_RESUME_CALL"; break;
    case CALL_STATE_MUTEON: name = "CALL_STATE_MUTEON"; break;
    case CALL_STATE_MUTEOFF: name = "CALL_STATE_MUTEOFF"; break;
    case CALL_STATE_DTMF_KEY: name = "CALL_STATE_DTMF_KEY"; break;
    case CALL_STATE_REJECT_CALL: name = "CALL_STATE_REJECT_CALL"; break;
    case CALL_STATE_DEVICE_CHANGE: name = "CALL_STATE_DEVICE_CHANGE"; break;
    default: return std::to_string(code);
    }
    return std::string(name) + "(" + std::to_string(code) + ")";
}

}  // namespace colloqsim
