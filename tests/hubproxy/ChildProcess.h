// A child process with its standard input and output connected to the test, read line by line
// with time-outs so that a test never hangs on a silent child.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

// Where the child's standard input comes from.
struct ChildInput {
    enum class Kind {
        Pipe,      // written by the test
        Terminal,  // a pseudo-terminal in line mode without echo, typed into by the test
        File,      // the file at `path`, read to its end
    };
    Kind kind = Kind::Pipe;
    std::string path;
};

class ChildProcess {
public:
    // Starts `program` with `arguments`; the environment is the test's own. Standard error is the
    // test's, so that the child's complaints show in the test log.
    ChildProcess(const std::string& program, const std::vector<std::string>& arguments, const ChildInput& from = {});
    // Kills the child if it still runs, and reaps it.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    bool started() const { return pid_ > 0; }
    pid_t pid() const { return pid_; }

    // Writes to the child's input (a pipe or terminal); false when that is gone or is a file.
    bool Write(const std::string& text);
    bool WriteLine(const std::string& line) { return Write(line + "\n"); }
    // Closes the test's end of the input: the end of a pipe, the hang-up of a terminal.
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
