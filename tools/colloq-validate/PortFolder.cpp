#include "PortFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

namespace colloqvalidate {

PortFolder::~PortFolder() {
    if (made_) {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
}

std::string PortFolder::choose() {
    if (const char* given = std::getenv("BQL_PORT_DIR"); given != nullptr && *given != '\0') {
        path_ = given;
        return "";
    }
    std::error_code error;
    std::filesystem::path base = std::filesystem::temp_directory_path(error);
    if (error) {
        base = "/tmp";
    }
    std::string pattern = (base / "colloq-validate-XXXXXX").string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    // mkdtemp makes the folder with mode 0700, as the pipe requires.
    if (::mkdtemp(name.data()) == nullptr) {
        return "cannot make a port folder from " + pattern + ": " + std::strerror(errno);
    }
    path_ = name.data();
    made_ = true;
    if (::setenv("BQL_PORT_DIR", path_.c_str(), 1) != 0) {
        return "cannot set BQL_PORT_DIR: " + std::string(std::strerror(errno));
    }
    return "";
}

}  // namespace colloqvalidate
