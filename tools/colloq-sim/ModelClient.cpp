#include "ModelClient.h"

#include <cstdio>
#include <sstream>
#include <utility>

#include "ClientCallState.h"
#include "platform/ThreadName.h"

namespace colloqsim {

namespace {

using hostharness::CallbackSlot;
using hostharness::HostCall;

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string describeCall(const hostharness::CallDescription& call) {
    std::ostringstream text;
    text << "call=" << call.id << " state=" << clientStateName(call.state) << "(" << call.state << ")";
    if (!call.number.empty()) {
        text << " number=" << quoted(call.number);
    }
    if (!call.name.empty()) {
        text << " name=" << quoted(call.name);
    }
    return text.str();
}

const char* severityName(int32_t severity) {
    switch (severity) {
    case ACCESSORY_LOG_FAILURE: return "failure";
    case ACCESSORY_LOG_MISSING_TABLE: return "missing table";
    case ACCESSORY_LOG_MILESTONE: return "milestone";
    case ACCESSORY_LOG_TRACE: return "trace";
    default: return "severity";
    }
}

bool reactsTo(HostCall call) {
    switch (call) {
    case HostCall::AnswerCall:
    case HostCall::EndCall:
    case HostCall::RejectCall:
    case HostCall::HoldCall:
    case HostCall::ResumeCall:
    case HostCall::MuteCall:
    case HostCall::UnmuteCall:
    case HostCall::MakeCall:
    case HostCall::SendDtmf:
    case HostCall::ReleaseActiveDevice:
    case HostCall::ActiveDeviceChanged: return true;
    default: return false;
    }
}

}  // namespace

TimelineEvent describeOperation(const hostharness::RecordedCall& operation) {
    TimelineEvent event;
    event.direction = Direction::PluginToClient;
    event.subject = "plugin";
    event.verb = hostharness::hostCallName(operation.call);
    std::ostringstream text;
    text << hostharness::hostCallName(operation.call);
    switch (operation.call) {
    case HostCall::Log: {
        event.direction = Direction::ClientLog;
        event.subject = "log";
        event.verb = "line";
        event.severity = operation.severity;
        std::ostringstream line;
        line << "[" << severityName(operation.severity) << " " << operation.severity << "] " << operation.text;
        event.text = line.str();
        return event;
    }
    case HostCall::EntryPoint: {
        char version[16];
        std::snprintf(version, sizeof version, "0x%05x", static_cast<unsigned>(operation.version));
        text << " version=" << version
             << (operation.version == 0x10001u   ? " (call-control table)"
                 : operation.version == 0x10002u ? " (logger table)"
                                                 : "");
        break;
    }
    case HostCall::GetLogger: text << " name=" << quoted(operation.loggerName); break;
    case HostCall::GetCalls: text << " max=" << operation.max; break;
    case HostCall::MakeCall:
        text << " device=" << quoted(operation.device) << " number=" << quoted(operation.number);
        event.argument = operation.number;
        break;
    case HostCall::SendDtmf:
        text << " device=" << quoted(operation.device) << " key='" << operation.key << "'";
        event.argument = std::string(1, operation.key);
        break;
    case HostCall::RegisterAccessoryCallbacks:
    case HostCall::UnregisterAccessoryCallbacks: break;
    default:
        text << " device=" << quoted(operation.device);
        event.argument = operation.device;
        break;
    }
    if (operation.nullArgument) {
        text << " (a null argument: refused)";
    }
    event.text = text.str();
    return event;
}

std::string describeFiring(const Firing& firing) {
    std::ostringstream text;
    text << hostharness::callbackSlotName(firing.slot);
    if (hostharness::isCallEventSlot(firing.slot)) {
        text << " " << describeCall(firing.args.call) << " calls=" << firing.args.calls.size();
    } else if (firing.slot == CallbackSlot::OnActiveDeviceChanged) {
        text << " device=" << quoted(firing.args.device);
    }
    return text.str();
}

ModelClient::ModelClient(hostharness::HostHarness& host, Timeline& timeline) : host_(host), timeline_(timeline) {}

ModelClient::~ModelClient() { stop(); }

bool ModelClient::start(std::string* error) {
    std::promise<void> started;
    std::future<void> ready = started.get_future();
    try {
        thread_ = std::thread(&ModelClient::run, this, &started);
    } catch (const std::system_error& failure) {
        if (error != nullptr) {
            *error = std::string("cannot start the client's thread: ") + failure.what();
        }
        return false;
    }
    ready.wait();
    std::shared_ptr<Inbox> inbox = inbox_;
    Timeline* timeline = &timeline_;
    host_.journal().setListener([inbox, timeline](const hostharness::RecordedCall& operation) {
        timeline->record(describeOperation(operation));
        if (!reactsTo(operation.call)) {
            return;
        }
        {
            bql::MutexLock lock(inbox->mutex);
            if (inbox->stopping) {
                return;
            }
            inbox->operations.push_back(operation);
        }
        inbox->changed.notify_all();
    });
    return true;
}

void ModelClient::stop() {
    host_.journal().setListener(nullptr);
    {
        bql::MutexLock lock(inbox_->mutex);
        inbox_->stopping = true;
    }
    inbox_->changed.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void ModelClient::run(std::promise<void>* started) {
    platform::nameCurrentThread("colloq-client");
    started->set_value();
    for (;;) {
        hostharness::RecordedCall operation;
        {
            bql::MutexLock lock(inbox_->mutex);
            while (!inbox_->stopping && inbox_->operations.empty()) {
                lock.wait(inbox_->changed);
            }
            if (inbox_->stopping) {
                return;
            }
            operation = std::move(inbox_->operations.front());
            inbox_->operations.pop_front();
            inbox_->busy = true;
        }
        const ClientOutcome outcome = apply([&operation](ClientModel& model) { return model.react(operation); });
        show(outcome);
        for (const Firing& firing : outcome.firings) {
            fire(firing);
        }
        {
            bql::MutexLock lock(inbox_->mutex);
            inbox_->busy = false;
        }
        inbox_->changed.notify_all();
    }
}

bool ModelClient::waitIdle(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bql::MutexLock lock(inbox_->mutex);
    while (inbox_->busy || !inbox_->operations.empty()) {
        if (inbox_->stopping || std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        lock.waitUntil(inbox_->changed, deadline);
    }
    return true;
}

ClientOutcome ModelClient::apply(const std::function<ClientOutcome(ClientModel&)>& action) {
    bql::MutexLock lock(mutex_);
    ClientOutcome outcome = action(model_);
    // Under the model's lock, so that two threads never publish their lists out of order.
    host_.responses().setCalls(model_.calls());
    return outcome;
}

std::string ModelClient::act(const std::function<ClientOutcome(ClientModel&)>& action) {
    const ClientOutcome outcome = apply(action);
    if (!outcome.ok()) {
        return outcome.error;
    }
    show(outcome);
    for (const Firing& firing : outcome.firings) {
        fire(firing);
    }
    return "";
}

void ModelClient::show(const ClientOutcome& outcome) {
    for (const ClientFact& fact : outcome.facts) {
        TimelineEvent event;
        event.direction = Direction::Client;
        event.subject = "client";
        event.verb = fact.verb;
        event.argument = fact.argument;
        event.text = fact.verb + (fact.argument.empty() ? "" : " " + fact.argument) +
                     (fact.detail.empty() ? "" : " (" + fact.detail + ")");
        timeline_.record(std::move(event));
    }
}

void ModelClient::fire(const Firing& firing) {
    TimelineEvent event;
    event.direction = Direction::ClientToPlugin;
    event.subject = "callback";
    event.verb = hostharness::callbackSlotName(firing.slot);
    event.text = describeFiring(firing);
    timeline_.record(std::move(event));
    const hostharness::HarnessStatus status = host_.callbacks().fire(firing.slot, firing.args);
    if (status != hostharness::HarnessStatus::Ok) {
        timeline_.note(std::string("not delivered: ") + hostharness::describe(status));
    }
}

ClientModel ModelClient::snapshot() const {
    bql::MutexLock lock(mutex_);
    return model_;
}

}  // namespace colloqsim
