// The model client at work: the client model behind the simulated client's tables. Every call
// the plug-in makes into the client is shown on the timeline as it happens and handed to the
// client's own thread ("colloq-client"), which lets the model react and fires the resulting
// callbacks, as a softphone answers its accessories asynchronously. The user's and the far
// end's actions run on the caller's thread. getCalls always reports the model's calls.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "ClientModel.h"
#include "Timeline.h"
#include "hostharness/HostHarness.h"
#include "bqlcommon/Mutex.h"

namespace colloqsim {

class ModelClient {
public:
    ModelClient(hostharness::HostHarness& host, Timeline& timeline);
    ~ModelClient();
    ModelClient(const ModelClient&) = delete;
    ModelClient& operator=(const ModelClient&) = delete;

    // Listens to the harness and starts the client's thread; false (and a reason) when the
    // thread cannot be started.
    bool start(std::string* error) BQL_EXCLUDES(mutex_);
    // Stops listening, wakes the thread and joins it. Operations still queued are dropped.
    void stop() BQL_EXCLUDES(mutex_);

    // Runs a user or far-end action on the model and fires what it asks for; the refusal text,
    // or "" when it was done.
    std::string act(const std::function<ClientOutcome(ClientModel&)>& action) BQL_EXCLUDES(mutex_);
    // Waits until every operation the plug-in made so far has been reacted to.
    bool waitIdle(std::chrono::milliseconds timeout) BQL_EXCLUDES(mutex_);

    // A copy of the model, for looking at it.
    ClientModel snapshot() const BQL_EXCLUDES(mutex_);

private:
    // Shared with the harness's listener, which may still run briefly after stop().
    struct Inbox {
        bql::Mutex mutex;
        std::condition_variable changed;
        std::deque<hostharness::RecordedCall> operations BQL_GUARDED_BY(mutex);
        bool stopping BQL_GUARDED_BY(mutex) = false;
        bool busy BQL_GUARDED_BY(mutex) = false;
    };

    void run(std::promise<void>* started);
    ClientOutcome apply(const std::function<ClientOutcome(ClientModel&)>& action) BQL_EXCLUDES(mutex_);
    void show(const ClientOutcome& outcome);
    void fire(const Firing& firing);

    hostharness::HostHarness& host_;
    Timeline& timeline_;
    std::shared_ptr<Inbox> inbox_ = std::make_shared<Inbox>();
    mutable bql::Mutex mutex_;
    ClientModel model_ BQL_GUARDED_BY(mutex_);
    std::thread thread_;
};

// The timeline line of a call the plug-in made into the client.
TimelineEvent describeOperation(const hostharness::RecordedCall& operation);
// The timeline line of a callback the client fires.
std::string describeFiring(const Firing& firing);

}  // namespace colloqsim
