// Per-user and machine-wide application-data folders.
#pragma once

#include <string>

namespace Brimquell {
namespace PathUtils {

// macOS: ~/Library/Application Support. Elsewhere: $XDG_DATA_HOME, else ~/.local/share.
// Returns 0 and fills path on success; leaves path alone otherwise.
int getUserAppDataDirectory(std::string& path);

// macOS: /Library/Application Support. Elsewhere: the first entry of $XDG_CONFIG_DIRS, else
// /etc/xdg. Returns 0 and fills path on success; leaves path alone otherwise.
int getCommonAppDataDirectory(std::string& path);

}  // namespace PathUtils
}  // namespace Brimquell
