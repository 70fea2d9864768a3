// The client's own numbering of call states (0 to 10) as the model client uses it, and names
// for showing them. The plug-in maps these values coarsely: 3 and 6 mean outgoing, 7 ringing,
// 9 connected, 10 held.
#pragma once

#include <cstdint>
#include <string>

namespace colloqsim {

namespace clientstate {
constexpr int32_t kIdle = 0;
constexpr int32_t kOffHook = 1;
constexpr int32_t kDialtone = 2;
constexpr int32_t kDialling = 3;
constexpr int32_t kBusy = 4;
constexpr int32_t kReorder = 5;
constexpr int32_t kAlerting = 6;
constexpr int32_t kRinging = 7;
constexpr int32_t kDisconnected = 8;
constexpr int32_t kConnected = 9;
constexpr int32_t kHeld = 10;
}  // namespace clientstate

// "ringing", "connected", ... or "state<N>" outside 0 to 10.
std::string clientStateName(int32_t state);

}  // namespace colloqsim
