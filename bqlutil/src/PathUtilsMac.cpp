// Application-data folders on macOS.

#include <exception>
#include <string>

#include "Export.h"
#include "HomeDirectory.h"
#include "bqlutil/PathUtils.h"

namespace Brimquell {
namespace PathUtils {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = -1;

constexpr const char kApplicationSupport[] = "/Library/Application Support";

}  // namespace

BQLUTIL_EXPORT int getUserAppDataDirectory(std::string& path) {
  try {
    std::string home;
    if (!bqlutil::findHomeDirectory(home)) {
      return kFailure;
    }
    std::string found = home + kApplicationSupport;
    path.swap(found);
    return kSuccess;
  } catch (const std::exception&) {
    return kFailure;
  }
}

BQLUTIL_EXPORT int getCommonAppDataDirectory(std::string& path) {
  try {
    std::string found = kApplicationSupport;
    path.swap(found);
    return kSuccess;
  } catch (const std::exception&) {
    return kFailure;
  }
}

}  // namespace PathUtils
}  // namespace Brimquell
