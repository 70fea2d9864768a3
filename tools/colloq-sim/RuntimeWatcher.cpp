#include "RuntimeWatcher.h"

#include <chrono>
#include <sstream>

#include "platform/ThreadName.h"

namespace colloqsim {

namespace {

constexpr auto kReadInterval = std::chrono::milliseconds(2);

struct CommandWords {
    const char* name;
    const char* verb;
};

CommandWords wordsOf(const VexilCtlCommand& command) {
    switch (command.command) {
    case VEXILCTL_CMD_INCOMING_CALL: return {"incomingCall", "rings"};
    case VEXILCTL_CMD_OUTGOING_CALL: return {"outgoingCall", "dials"};
    case VEXILCTL_CMD_TERMINATE_CALL: return {"terminateCall", "ended"};
    case VEXILCTL_CMD_ANSWERED_CALL: return {"answeredCall", "active"};
    case VEXILCTL_CMD_HOLD_CALL: return {"holdCall", "held"};
    case VEXILCTL_CMD_RESUME_CALL: return {"resumeCall", "resumed"};
    case VEXILCTL_CMD_INSERT_CALL: return {"insertCall", "inserted"};
    case VEXILCTL_CMD_SET_MUTE: return {"setMute", command.mute ? "muted" : "unmuted"};
    default: return {"command", "command"};
    }
}

}  // namespace

TimelineEvent describeCommand(const VexilCtlCommand& command) {
    const CommandWords words = wordsOf(command);
    TimelineEvent event;
    event.direction = Direction::PluginToHeadset;
    event.subject = "headset";
    event.verb = command.status == 0 ? words.verb : "refused";
    std::ostringstream text;
    text << words.name;
    if (command.command == VEXILCTL_CMD_SET_MUTE) {
        text << " mute=" << (command.mute ? "on" : "off");
    } else {
        event.argument = std::to_string(command.callId);
        text << " call=" << command.callId;
    }
    if (command.hasContact) {
        text << " name=\"" << command.contactName << "\" number=\"" << command.contactPhone << "\"";
    }
    if (command.status != 0) {
        text << " refused with status " << command.status;
    } else {
        text << "  → headset " << words.verb;
    }
    event.text = text.str();
    return event;
}

bool RuntimeWatcher::start(std::string* error) {
    {
        bql::MutexLock lock(readMutex_);
        int32_t count = 0;
        vexilctl_command_count(&count);
        shown_ = count;
        char active[VEXILCTL_PATH_BYTES] = {};
        vexilctl_get_active_device(active, sizeof active);
        activeDevice_ = active;
    }
    std::promise<void> started;
    std::future<void> ready = started.get_future();
    try {
        thread_ = std::thread(&RuntimeWatcher::run, this, &started);
    } catch (const std::system_error& failure) {
        if (error != nullptr) {
            *error = std::string("cannot start the runtime watcher: ") + failure.what();
        }
        return false;
    }
    ready.wait();
    return true;
}

void RuntimeWatcher::stop() {
    {
        bql::MutexLock lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void RuntimeWatcher::run(std::promise<void>* started) {
    platform::nameCurrentThread("runtime-watch");
    started->set_value();
    for (;;) {
        sync();
        bql::MutexLock lock(mutex_);
        if (stopping_) {
            break;
        }
        lock.waitUntil(wake_, std::chrono::steady_clock::now() + kReadInterval);
        if (stopping_) {
            break;
        }
    }
    sync();
}

void RuntimeWatcher::sync() {
    bql::MutexLock lock(readMutex_);
    showNewCommands();
    showActiveDevice();
}

void RuntimeWatcher::showActiveDevice() {
    char active[VEXILCTL_PATH_BYTES] = {};
    vexilctl_get_active_device(active, sizeof active);
    if (activeDevice_ == active) {
        return;
    }
    activeDevice_ = active;
    TimelineEvent event;
    event.direction = Direction::PluginToHeadset;
    event.subject = "headset";
    event.verb = "selected";
    event.argument = activeDevice_;
    event.text = activeDevice_.empty() ? "the runtime has no active headset"
                                       : "the runtime's active headset is " + activeDevice_;
    timeline_.record(std::move(event));
}

void RuntimeWatcher::showNewCommands() {
    int32_t count = 0;
    if (vexilctl_command_count(&count) != VEXILCTL_OK) {
        return;
    }
    for (; shown_ < count; ++shown_) {
        VexilCtlCommand command{};
        if (vexilctl_command_at(shown_, &command) == VEXILCTL_OK) {
            timeline_.record(describeCommand(command));
        }
    }
}

}  // namespace colloqsim
