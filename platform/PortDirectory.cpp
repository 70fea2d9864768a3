#include "platform/PortDirectory.h"

#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "bqlutil/LogWriter.h"

namespace bql::platform {
namespace {

const char* NonEmptyVariable(const char* name) {
    const char* value = std::getenv(name);
    return (value != nullptr && value[0] != '\0') ? value : nullptr;
}

std::string ErrorText(int error) { return std::error_code(error, std::generic_category()).message(); }

std::string ModeText(mode_t mode) {
    char text[8];
    std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777));
    return text;
}

}  // namespace

std::string PortDirectoryPath() {
    if (const char* chosen = NonEmptyVariable("BQL_PORT_DIR")) {
        return chosen;
    }
    if (const char* runtime = NonEmptyVariable("XDG_RUNTIME_DIR")) {
        return std::string(runtime) + "/bqlhub";
    }
    return "/tmp/bqlhub-" + std::to_string(::geteuid());
}

std::optional<std::string> OpenPortDirectory() {
    const std::string directory = PortDirectoryPath();
    if (::mkdir(directory.c_str(), 0700) == 0) {
        // The umask may have taken bits away that the owner needs.
        ::chmod(directory.c_str(), 0700);
    } else if (errno != EEXIST) {
        const std::string text = "cannot create the port directory " + directory + ": " + ErrorText(errno);
        LogWriter_error(text.c_str(), __PRETTY_FUNCTION__, "<>");
        return std::nullopt;
    }

    // lstat: a symbolic link could lead anywhere, so it is refused like any other non-folder.
    struct stat info {};
    std::string refusal;
    if (::lstat(directory.c_str(), &info) != 0) {
        refusal = ErrorText(errno);
    } else if (!S_ISDIR(info.st_mode)) {
        refusal = "not a directory";
    } else if (info.st_uid != ::geteuid()) {
        refusal = "owned by user " + std::to_string(info.st_uid);
    } else if ((info.st_mode & 077) != 0) {
        refusal = "open to group or others (mode " + ModeText(info.st_mode) + ")";
    }
    if (!refusal.empty()) {
        const std::string text = "port directory " + directory + " refused: " + refusal;
        LogWriter_error(text.c_str(), __PRETTY_FUNCTION__, "<>");
        return std::nullopt;
    }
    return directory;
}

std::optional<std::string> PortFilePath(const std::string& directory, const std::string& portName) {
    std::string path = directory + "/" + portName;
    if (path.size() >= sizeof(sockaddr_un{}.sun_path)) {
        const std::string text = "port path too long for a socket address: " + path;
        LogWriter_error(text.c_str(), __PRETTY_FUNCTION__, "<>");
        return std::nullopt;
    }
    return path;
}

}  // namespace bql::platform
