// Application-data folders after the XDG base-directory conventions, used everywhere but macOS.

#include <cstdlib>
#include <exception>
#include <sstream>
#include <string>

#include "Export.h"
#include "HomeDirectory.h"
#include "bqlutil/PathUtils.h"

namespace Brimquell {
namespace PathUtils {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = -1;

constexpr const char kUserDataUnderHome[] = "/.local/share";
constexpr const char kDefaultConfigDir[] = "/etc/xdg";

// The conventions count relative paths in these variables as invalid, like empty ones.
bool isAbsolute(const std::string& path) { return !path.empty() && path.front() == '/'; }

std::string environmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? std::string(value) : std::string();
}

// The first absolute entry of a colon-separated list; empty when there is none.
std::string firstAbsoluteEntry(const std::string& list) {
  std::istringstream entries(list);
  std::string entry;
  while (std::getline(entries, entry, ':')) {
    if (isAbsolute(entry)) {
      return entry;
    }
  }
  return std::string();
}

}  // namespace

BQLUTIL_EXPORT int getUserAppDataDirectory(std::string& path) {
  try {
    std::string found = environmentValue("XDG_DATA_HOME");
    if (!isAbsolute(found)) {
      std::string home;
      if (!bqlutil::findHomeDirectory(home)) {
        return kFailure;
      }
      found = home + kUserDataUnderHome;
    }
    path.swap(found);
    return kSuccess;
  } catch (const std::exception&) {
    return kFailure;
  }
}

BQLUTIL_EXPORT int getCommonAppDataDirectory(std::string& path) {
  try {
    std::string found = firstAbsoluteEntry(environmentValue("XDG_CONFIG_DIRS"));
    if (found.empty()) {
      found = kDefaultConfigDir;
    }
    path.swap(found);
    return kSuccess;
  } catch (const std::exception&) {
    return kFailure;
  }
}

}  // namespace PathUtils
}  // namespace Brimquell
