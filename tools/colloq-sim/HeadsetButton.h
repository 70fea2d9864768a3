// The headset buttons a scenario presses and the runtime's call-state codes they report.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace colloqsim {

// "answer" 1, "end" 2, "hold" 3, "resume" 4, "mute" 11, "unmute" 12, "reject" 23,
// "select" 28 (this headset wants to be the client's device); nothing for other words.
std::optional<int32_t> buttonCode(const std::string& button);
// The words buttonCode knows, separated by blanks.
const char* buttonWords();
// "CALL_STATE_ACCEPT_CALL(1)", "28", ... for the timeline.
std::string callStateCodeName(int32_t code);

}  // namespace colloqsim
