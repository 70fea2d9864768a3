// Shows on the timeline every call command the substitute runtime received from the plug-in,
// and every change of the runtime's active headset.
// The runtime only keeps a command log and announces nothing, so a named thread
// ("runtime-watch") reads the log's new entries at a short interval until it is woken to stop.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <future>
#include <string>
#include <thread>

#include "Timeline.h"
#include "bqlcommon/Mutex.h"
#include "vexilctl/VexilControl.h"

namespace colloqsim {

class RuntimeWatcher {
public:
    explicit RuntimeWatcher(Timeline& timeline) : timeline_(timeline) {}
    ~RuntimeWatcher() { stop(); }
    RuntimeWatcher(const RuntimeWatcher&) = delete;
    RuntimeWatcher& operator=(const RuntimeWatcher&) = delete;

    bool start(std::string* error) BQL_EXCLUDES(mutex_);
    // Shows what is left in the log, then stops and joins the thread.
    void stop() BQL_EXCLUDES(mutex_);
    // Shows at once what the runtime has received so far.
    void sync() BQL_EXCLUDES(readMutex_);

private:
    void run(std::promise<void>* started) BQL_EXCLUDES(mutex_);
    void showNewCommands() BQL_REQUIRES(readMutex_);
    void showActiveDevice() BQL_REQUIRES(readMutex_);

    Timeline& timeline_;
    bql::Mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ BQL_GUARDED_BY(mutex_) = false;
    // Taken by whoever reads the runtime, so that nothing is shown twice.
    bql::Mutex readMutex_;
    int32_t shown_ BQL_GUARDED_BY(readMutex_) = 0;  // log entries shown so far
    std::string activeDevice_ BQL_GUARDED_BY(readMutex_);  // the runtime's active headset as last shown
    std::thread thread_;
};

// The timeline line of one runtime command.
TimelineEvent describeCommand(const VexilCtlCommand& command);

}  // namespace colloqsim
