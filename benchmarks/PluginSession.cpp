#include "PluginSession.h"

#include <cstdlib>
#include <filesystem>

#include "Clock.h"
#include "hostharness/HostHarness.h"
#include "vexilctl/VexilCommandObserver.h"
#include "vexilrt/Events.h"

namespace bench {

namespace {

namespace fs = std::filesystem;
using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::HostHarness;

constexpr const char* kConnectedLine = "BQLColloqPlugin v.3.8.51535.41614: Connected to VexilRT successfully";
constexpr uint16_t kProductId = 0x0a1b;
constexpr const char* kProductName = "Model 5.1";
// The client's name of that headset's audio device.
constexpr const char* kClientDeviceId = "AppleUSBAudioEngine:Brimquell:Model 5_1";

int64_t commandKey(int32_t command, int32_t callId) {
    return (static_cast<int64_t>(command) << 32) | static_cast<uint32_t>(callId);
}

}  // namespace

PluginSession::PluginSession(std::string pluginPath) : pluginPath_(std::move(pluginPath)) {}

PluginSession::~PluginSession() {
    if (library_.isInitialized()) {
        uninitialize();
    }
    library_.unload();
    vexilctl_set_command_observer(nullptr, nullptr);
    HostHarness::instance().journal().setListener({});
    if (!folder_.empty()) {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
}

bool PluginSession::prepare() {
    std::string pattern = (fs::temp_directory_path() / "bql-bench-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        error_ = "cannot make a temporary folder";
        return false;
    }
    folder_ = pattern;
    // The plug-in's local log and the hub's ports stay inside this folder.
    ::setenv("XDG_DATA_HOME", (folder_ + "/data").c_str(), 1);
    ::setenv("XDG_CONFIG_DIRS", (folder_ + "/config").c_str(), 1);
    ::setenv("BQL_PORT_DIR", (folder_ + "/ports").c_str(), 1);

    if (vexilctl_reset() != VEXILCTL_OK) {
        error_ = "the runtime is running already";
        return false;
    }
    HostHarness::instance().reset();
    char path[VEXILCTL_PATH_BYTES] = {};
    if (vexilctl_make_headset_path(kProductId, "SN1", path, sizeof path) != VEXILCTL_OK ||
        vexilctl_add_headset(path, kProductName, kProductId, 1) != VEXILCTL_OK) {
        error_ = "cannot plug the headset in";
        return false;
    }
    headsetPath_ = path;
    if (library_.load(pluginPath_) != HarnessStatus::Ok) {
        error_ = "cannot load " + pluginPath_ + ": " + library_.lastError();
        return false;
    }
    vexilctl_set_command_observer(&PluginSession::onCommand, this);
    HostHarness::instance().journal().setListener(
        [this](const hostharness::RecordedCall& call) { onClientCall(call); });
    return true;
}

void PluginSession::onCommand(const VexilCtlCommand* command, void* context) {
    const int64_t stamp = nowNs();
    auto* session = static_cast<PluginSession*>(context);
    session->commands_.post(commandKey(command->command, command->callId), stamp);
    TerminateListener* listener = session->terminateListener_.load();
    if (command->command == VEXILCTL_CMD_TERMINATE_CALL && listener != nullptr) {
        listener->ended(command->callId);
    }
}

void PluginSession::onClientCall(const hostharness::RecordedCall& call) {
    const int64_t stamp = nowNs();
    if (call.call == HostCall::AnswerCall) {
        answers_.post(0, stamp);
    } else if (call.call == HostCall::Log && call.text == kConnectedLine) {
        connected_.post(0, stamp);
    }
}

bool PluginSession::initialize(int64_t* calledNs, int64_t* connectedNs) {
    int result = -1;
    const int64_t called = nowNs();
    if (library_.initialize(HostHarness::instance().entryPoint(), &result) != HarnessStatus::Ok || result != 0) {
        error_ = "initialize failed";
        return false;
    }
    const auto connected = connected_.take(0, kWaitLimit);
    if (!connected) {
        error_ = "the plug-in did not connect to the runtime";
        return false;
    }
    if (calledNs != nullptr) {
        *calledNs = called;
    }
    if (connectedNs != nullptr) {
        *connectedNs = *connected;
    }
    return true;
}

bool PluginSession::initializeOnly() {
    int result = -1;
    return library_.initialize(HostHarness::instance().entryPoint(), &result) == HarnessStatus::Ok && result == 0;
}

bool PluginSession::uninitialize() {
    int result = -1;
    return library_.uninitialize(&result) == HarnessStatus::Ok && result == 0;
}

bool PluginSession::chooseHeadset() { return chooseDevice(kClientDeviceId); }

bool PluginSession::chooseOtherDevice() { return chooseDevice("BuiltInSpeakerDevice"); }

bool PluginSession::chooseDevice(const char* clientId) {
    hostharness::CallbackArgs args;
    args.device = clientId;
    return HostHarness::instance().callbacks().fire(hostharness::CallbackSlot::OnActiveDeviceChanged, args) ==
           HarnessStatus::Ok;
}

bool PluginSession::fire(hostharness::CallbackSlot slot, int32_t callId, int32_t clientState) {
    hostharness::CallDescription call;
    call.id = callId;
    call.state = clientState;
    call.number = "5551234";
    call.name = "Ann Smith";
    int result = -1;
    return HostHarness::instance().callbacks().fireCallEvent(slot, call, &result) == HarnessStatus::Ok && result == 0;
}

bool PluginSession::pressAccept(int32_t callId) {
    return vexilctl_press_button(headsetPath_.c_str(), CALL_STATE_ACCEPT_CALL, callId, nullptr) == VEXILCTL_OK;
}

std::optional<int64_t> PluginSession::awaitCommand(int32_t command, int32_t callId) {
    return commands_.take(commandKey(command, callId), kWaitLimit);
}

std::optional<int64_t> PluginSession::awaitAnswer() { return answers_.take(0, kWaitLimit); }

void PluginSession::forgetRecords() {
    HostHarness::instance().journal().clear();
    vexilctl_clear_commands();
}

}  // namespace bench
