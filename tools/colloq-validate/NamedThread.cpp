#include "NamedThread.h"

#include <future>
#include <system_error>

#include "platform/ThreadName.h"

namespace colloqvalidate {

bool startNamedThread(std::thread& thread, const std::string& name, std::function<void()> body, std::string* error) {
    std::promise<void> started;
    std::future<void> running = started.get_future();
    try {
        thread = std::thread([name, work = std::move(body), announce = std::move(started)]() mutable {
            platform::nameCurrentThread(name.c_str());
            announce.set_value();
            work();
        });
    } catch (const std::system_error& failure) {
        *error = "cannot start the thread " + name + ": " + failure.what();
        return false;
    }
    running.wait();
    return true;
}

}  // namespace colloqvalidate
