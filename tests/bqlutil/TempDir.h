// A fresh folder under the system's temporary folder, removed with everything in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace bqlutil_test {

class TempDir {
 public:
  TempDir() {
    const std::filesystem::path pattern = std::filesystem::temp_directory_path() / "bqlutil-XXXXXX";
    std::string text = pattern.string();
    std::vector<char> buffer(text.begin(), text.end());
    buffer.push_back('\0');
    if (mkdtemp(buffer.data()) != nullptr) {
      path_ = buffer.data();
    }
  }
  ~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) {
      std::filesystem::remove_all(path_, ignored);
    }
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  // Empty when the folder could not be made.
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace bqlutil_test
