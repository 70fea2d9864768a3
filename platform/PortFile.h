// The socket file of a port: reclaiming one that its dead owner left behind, and removing our own.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace bql::platform {

// Makes `path` free for binding when nobody receives on it: a file left by a dead owner is
// removed. Returns false while a live receiver owns it, or when something that is not a socket
// sits there (that is never removed).
bool ReclaimPortFile(const std::string& path);

// Identity of a file, so that we remove our own socket file and not one that replaced it.
struct PortFileIdentity {
    dev_t device;
    ino_t inode;
};

std::optional<PortFileIdentity> IdentifyPortFile(const std::string& path);

// Removes the file at `path` when it is still the file identified by `identity`.
void RemovePortFile(const std::string& path, const PortFileIdentity& identity);

}  // namespace bql::platform
