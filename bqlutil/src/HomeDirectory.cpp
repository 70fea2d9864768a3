#include "HomeDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace bqlutil {
namespace {

// Used when the system gives no hint for the account entry's buffer.
constexpr std::size_t kInitialAccountBufferSize = 1024;
// Account entries are small; a buffer beyond this means something else is wrong.
constexpr std::size_t kMaximumAccountBufferSize = std::size_t{1} << 20;

std::size_t initialAccountBufferSize() {
  const long suggested = sysconf(_SC_GETPW_R_SIZE_MAX);
  return suggested > 0 ? static_cast<std::size_t>(suggested) : kInitialAccountBufferSize;
}

}  // namespace

bool findHomeDirectory(std::string& home) {
  const char* fromEnvironment = std::getenv("HOME");
  if (fromEnvironment != nullptr && *fromEnvironment != '\0') {
    home = fromEnvironment;
    return true;
  }
  return accountHomeDirectory(getuid(), home);
}

bool accountHomeDirectory(uid_t uid, std::string& home) {
  std::vector<char> buffer(initialAccountBufferSize());
  for (;;) {
    passwd entry{};
    passwd* found = nullptr;
    const int error = getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found);
    if (error == ERANGE && buffer.size() < kMaximumAccountBufferSize) {
      buffer.resize(buffer.size() * 2);
      continue;
    }
    if (error != 0 || found == nullptr || found->pw_dir == nullptr || *found->pw_dir == '\0') {
      return false;
    }
    home = found->pw_dir;
    return true;
  }
}

}  // namespace bqlutil
