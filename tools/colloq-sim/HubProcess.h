// The hub simulator as a child process: commands go to its standard input, and a named thread
// ("hub-reader") hands every line of its output to a handler until the output ends.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "bqlcommon/Mutex.h"

namespace colloqsim {

class HubProcess {
public:
    using LineHandler = std::function<void(const std::string&)>;

    HubProcess() = default;
    // Stops the process if it still runs.
    ~HubProcess();
    HubProcess(const HubProcess&) = delete;
    HubProcess& operator=(const HubProcess&) = delete;

    // Starts program with arguments and the reader; false and a reason when either fails.
    bool start(const std::string& program, const std::vector<std::string>& arguments, LineHandler onLine,
               std::string* error);
    bool writeLine(const std::string& line);
    // Closes its input, which ends it; kills it when its output has not ended within the
    // time-out. Joins the reader and reaps the process. True when it ended by itself with 0.
    bool stop(std::chrono::milliseconds timeout) BQL_EXCLUDES(mutex_);
    bool running() const { return pid_ > 0; }

private:
    void read(std::promise<void>* started) BQL_EXCLUDES(mutex_);

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    LineHandler onLine_;
    bql::Mutex mutex_;
    std::condition_variable ended_;
    bool outputEnded_ BQL_GUARDED_BY(mutex_) = false;
    std::thread reader_;
};

}  // namespace colloqsim
