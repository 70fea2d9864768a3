// Device identity: the client's device identifiers, the runtime's device paths, and the
// maker's USB vendor id.
#pragma once

#include <string>

// The device name a client identifier carries in its third ":" field, with its first "_"
// turned back into "." (which then matches any character as a pattern); "" with fewer fields.
std::string GetNameFromColloqPath(const char* colloqPath);

// Whether a device path carries the maker's USB vendor id; an empty path is not.
bool isBrimquell(std::string path);
