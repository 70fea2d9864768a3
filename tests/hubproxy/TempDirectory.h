// A fresh private directory for one test, removed with everything in it afterwards.
#pragma once

#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <system_error>

class TempDirectory {
public:
    TempDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bqlhub-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) != nullptr) {
            path_ = pattern;
        }
    }
    ~TempDirectory() {
        std::error_code ignored;
        // A test may have closed a folder to its owner; open it again so it can be removed.
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};
