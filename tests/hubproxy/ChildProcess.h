// A child process with its standard input and output connected to the test, read line by line
// with time-outs so that a test never hangs on a silent child.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

class ChildProcess {
public:
    // Starts `program` with `arguments`; the environment is the test's own. Standard error is the
    // test's, so that the child's complaints show in the test log.
    ChildProcess(const std::string& program, const std::vector<std::string>& arguments);
    // Kills the child if it still runs, and reaps it.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    pid_t pid() const { return pid_; }

    bool WriteLine(const std::string& line);
    void CloseInput();
    // The next line of output, or nothing when the child closes its output or the time-out passes.
    std::optional<std::string> ReadLine(std::chrono::milliseconds limit = std::chrono::seconds(10));
    // Reads lines until one contains `text`; returns it, or nothing on end or time-out.
    std::optional<std::string> ReadLineContaining(const std::string& text,
                                                  std::chrono::milliseconds limit = std::chrono::seconds(10));
    void Signal(int signal) const;
    // The exit status (as from waitpid) once the child has ended, or nothing on time-out.
    std::optional<int> Wait(std::chrono::milliseconds limit = std::chrono::seconds(10));

private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string pending_;
    std::optional<int> status_;
};
