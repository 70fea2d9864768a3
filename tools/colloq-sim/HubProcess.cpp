#include "HubProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/ThreadName.h"

extern char** environ;

namespace colloqsim {

HubProcess::~HubProcess() { stop(std::chrono::seconds(5)); }

bool HubProcess::start(const std::string& program, const std::vector<std::string>& arguments, LineHandler onLine,
                       std::string* error) {
    int toChild[2];
    int fromChild[2];
    if (::pipe2(toChild, O_CLOEXEC) != 0) {
        *error = std::string("no pipe: ") + std::strerror(errno);
        return false;
    }
    if (::pipe2(fromChild, O_CLOEXEC) != 0) {
        *error = std::string("no pipe: ") + std::strerror(errno);
        ::close(toChild[0]);
        ::close(toChild[1]);
        return false;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toChild[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], STDOUT_FILENO);
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    const int spawned = ::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(toChild[0]);
    ::close(fromChild[1]);
    input_ = toChild[1];
    output_ = fromChild[0];
    if (spawned != 0) {
        pid_ = -1;
        *error = "cannot start " + program + ": " + std::strerror(spawned);
        ::close(input_);
        ::close(output_);
        input_ = output_ = -1;
        return false;
    }
    onLine_ = std::move(onLine);
    std::promise<void> started;
    std::future<void> ready = started.get_future();
    try {
        reader_ = std::thread(&HubProcess::read, this, &started);
    } catch (const std::system_error& failure) {
        *error = std::string("cannot start the hub reader: ") + failure.what();
        ::close(output_);
        output_ = -1;
        stop(std::chrono::seconds(5));
        return false;
    }
    ready.wait();
    return true;
}

bool HubProcess::writeLine(const std::string& line) {
    const std::string text = line + "\n";
    std::size_t written = 0;
    while (input_ >= 0 && written < text.size()) {
        const ssize_t result = ::write(input_, text.data() + written, text.size() - written);
        if (result < 0 && errno == EINTR) {
            continue;
        }
        if (result <= 0) {
            return false;
        }
        written += static_cast<std::size_t>(result);
    }
    return input_ >= 0;
}

void HubProcess::read(std::promise<void>* started) {
    platform::nameCurrentThread("hub-reader");
    started->set_value();
    std::string pending;
    char buffer[4096];
    for (;;) {
        const ssize_t count = ::read(output_, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        pending.append(buffer, static_cast<std::size_t>(count));
        for (std::size_t end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            const std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            onLine_(line);
        }
    }
    {
        bql::MutexLock lock(mutex_);
        outputEnded_ = true;
    }
    ended_.notify_all();
}

bool HubProcess::stop(std::chrono::milliseconds timeout) {
    if (input_ >= 0) {
        ::close(input_);
        input_ = -1;
    }
    if (pid_ <= 0) {
        return true;
    }
    if (reader_.joinable()) {
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        bool ended = false;
        {
            bql::MutexLock lock(mutex_);
            while (!outputEnded_ && std::chrono::steady_clock::now() < deadline) {
                lock.waitUntil(ended_, deadline);
            }
            ended = outputEnded_;
        }
        if (!ended) {
            ::kill(pid_, SIGKILL);
        }
        reader_.join();
    }
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
    if (output_ >= 0) {
        ::close(output_);
        output_ = -1;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace colloqsim
