#include "PortFileWatch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace colloqsim {

namespace {

bool exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

}  // namespace

bool waitForFile(const std::string& folder, const std::string& name, std::chrono::milliseconds timeout) {
    const std::string path = folder + "/" + name;
    const int watch = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (watch < 0) {
        return exists(path);
    }
    bool found = false;
    // The watch is in place before the first look, so a file made in between is not missed.
    if (::inotify_add_watch(watch, folder.c_str(), IN_CREATE | IN_MOVED_TO) >= 0) {
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        while (!(found = exists(path))) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0) {
                break;
            }
            pollfd ready{watch, POLLIN, 0};
            const int polled = ::poll(&ready, 1, static_cast<int>(left.count()));
            if (polled < 0 && errno != EINTR) {
                break;
            }
            char events[4096];
            while (::read(watch, events, sizeof events) > 0) {
            }
        }
    }
    ::close(watch);
    return found;
}

}  // namespace colloqsim
