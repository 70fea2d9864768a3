#include "Misuse.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "appledouble/AppleDouble.h"

namespace appledouble {
namespace {

// The exit status of a process that ended with misuses nobody collected (EX_SOFTWARE).
constexpr int kMisuseExitStatus = 70;

std::atomic<std::size_t> misuses{0};
std::once_flag exitCheckRegistered;

void failOnUncollectedMisuse() {
    const std::size_t left = misuses.load();
    if (left != 0) {
        std::fprintf(stderr, "BQLAppleDouble: %zu misuse(s) of CoreFoundation or dispatch, see above\n", left);
        std::fflush(stderr);
        ::_exit(kMisuseExitStatus);
    }
}

}  // namespace

void reportMisuse(const char* function, const char* what) {
    std::call_once(exitCheckRegistered, [] { std::atexit(failOnUncollectedMisuse); });
    misuses.fetch_add(1);
    std::fprintf(stderr, "BQLAppleDouble: %s: %s\n", function, what);
    std::fflush(stderr);
}

std::size_t takeMisuseCount() { return misuses.exchange(0); }

}  // namespace appledouble
