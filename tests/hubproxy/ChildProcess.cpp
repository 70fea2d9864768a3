#include "ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

extern char** environ;

namespace {

// Opens a pseudo-terminal in line mode without echo: the test's end in `master`, the child's in
// `slave`. Neither becomes the test's controlling terminal.
bool OpenTerminal(int& master, int& slave) {
    master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0) {
        return false;
    }
    const char* name = ::grantpt(master) == 0 && ::unlockpt(master) == 0 ? ::ptsname(master) : nullptr;
    slave = name == nullptr ? -1 : ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios mode{};
    if (slave < 0 || ::tcgetattr(slave, &mode) != 0) {
        ::close(master);
        if (slave >= 0) {
            ::close(slave);
        }
        return false;
    }
    mode.c_lflag |= ICANON;
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
    ::tcsetattr(slave, TCSANOW, &mode);
    return true;
}

// The child's end of its input in `childEnd` and the test's in `testEnd` (-1 for a file).
bool OpenInput(const ChildInput& from, int& childEnd, int& testEnd) {
    switch (from.kind) {
    case ChildInput::Kind::Terminal:
        return OpenTerminal(testEnd, childEnd);
    case ChildInput::Kind::File:
        testEnd = -1;
        childEnd = ::open(from.path.c_str(), O_RDONLY | O_CLOEXEC);
        return childEnd >= 0;
    case ChildInput::Kind::Pipe:
        break;
    }
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    childEnd = ends[0];
    testEnd = ends[1];
    return true;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments,
                           const ChildInput& from) {
    int childInput = -1;
    int testInput = -1;
    if (!OpenInput(from, childInput, testInput)) {
        return;
    }
    int fromChild[2];
    if (::pipe2(fromChild, O_CLOEXEC) != 0) {
        ::close(childInput);
        if (testInput >= 0) {
            ::close(testInput);
        }
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, childInput, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], STDOUT_FILENO);

    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    if (::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ) != 0) {
        pid_ = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    ::close(childInput);
    ::close(fromChild[1]);
    input_ = testInput;
    output_ = fromChild[0];
}

ChildProcess::~ChildProcess() {
    CloseInput();
    if (pid_ > 0 && !status_) {
        ::kill(pid_, SIGKILL);
        int status = 0;
        ::waitpid(pid_, &status, 0);
    }
    if (output_ >= 0) {
        ::close(output_);
    }
}

bool ChildProcess::Write(const std::string& text) {
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

void ChildProcess::CloseInput() {
    if (input_ >= 0) {
        ::close(input_);
        input_ = -1;
    }
}

std::optional<std::string> ChildProcess::ReadLine(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const std::size_t end = pending_.find('\n');
        if (end != std::string::npos) {
            std::string line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            return line;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (output_ < 0 || left.count() <= 0) {
            return std::nullopt;
        }
        pollfd watch{output_, POLLIN, 0};
        const int ready = ::poll(&watch, 1, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0) {
            return std::nullopt;
        }
        char buffer[4096];
        const ssize_t got = ::read(output_, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return std::nullopt;
        }
        pending_.append(buffer, static_cast<std::size_t>(got));
    }
}

std::optional<std::string> ChildProcess::ReadLineContaining(const std::string& text, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        std::optional<std::string> line = ReadLine(left);
        if (!line || line->find(text) != std::string::npos) {
            return line;
        }
    }
}

void ChildProcess::Signal(int signal) const {
    if (pid_ > 0 && !status_) {
        ::kill(pid_, signal);
    }
}

std::optional<int> ChildProcess::Wait(std::chrono::milliseconds limit) {
    if (status_ || pid_ <= 0) {
        return status_;
    }
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        int status = 0;
        const pid_t done = ::waitpid(pid_, &status, WNOHANG);
        if (done == pid_) {
            status_ = status;
            return status_;
        }
        if (done < 0 || std::chrono::steady_clock::now() >= deadline) {
            return std::nullopt;
        }
        // waitpid cannot wait with a time-out; poll the child's state in short steps.
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}
