// A directory that belongs to another user: one given away when the tests run as root, else the
// root directory, which an ordinary user does not own.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <string>

struct ForeignDirectory {
    std::string path;
    uid_t owner;
};

// `scratch` is given away when that is possible; nothing when no such directory can be had.
inline std::optional<ForeignDirectory> DirectoryOfAnotherUser(const std::string& scratch) {
    constexpr uid_t kStranger = 4242;
    if (::geteuid() == 0) {
        if (::chown(scratch.c_str(), kStranger, kStranger) != 0) {
            return std::nullopt;
        }
        return ForeignDirectory{scratch, kStranger};
    }
    struct stat info {};
    if (::lstat("/", &info) != 0 || info.st_uid == ::geteuid()) {
        return std::nullopt;
    }
    return ForeignDirectory{"/", info.st_uid};
}
