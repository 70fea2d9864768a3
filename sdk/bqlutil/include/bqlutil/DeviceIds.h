// USB identities carried in device paths such as "hid/vid_2f0c&pid_0a1b/SN123".
#pragma once

#include <cstdint>
#include <string>

// The maker's USB vendor id.
constexpr uint16_t BRIMQUELL_USB_VID = 0x2F0C;

namespace Brimquell {

// Finds "vid_" and "pid_" (any case), each followed by 1 to 4 hexadecimal digits, and writes
// both ids. Returns false, writing nothing, when either is missing. Null outputs are skipped.
bool get_vid_pid_from_device_path(const std::wstring& path, uint16_t* vid, uint16_t* pid);

}  // namespace Brimquell
