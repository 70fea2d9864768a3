// Where the hub pipe's ports live off Apple systems: one private folder per user, each port a
// socket file in it named after the port.
#pragma once

#include <optional>
#include <string>

namespace bql::platform {

// $BQL_PORT_DIR if set, else $XDG_RUNTIME_DIR/bqlhub, else /tmp/bqlhub-<uid>. Empty variables
// count as unset.
std::string PortDirectoryPath();

// Creates the folder with mode 0700 when it is missing and checks that it is a folder of this user
// closed to group and others. Returns its path, or nothing when it is refused or cannot be made;
// either failure writes one error line to the local log.
std::optional<std::string> OpenPortDirectory();

// Path of the socket file of `portName` inside `directory`, or nothing when it does not fit a
// socket address.
std::optional<std::string> PortFilePath(const std::string& directory, const std::string& portName);

}  // namespace bql::platform
