#include "DemoScript.h"

#include <vector>

#include "Console.h"
#include "DemoCall.h"
#include "Text.h"
#include "vexilctl/VexilControl.h"

namespace demo {

namespace {

constexpr uint16_t kProductId = 0xac27;
constexpr const char* kSerial = "DEMO-0001";
constexpr const char* kProductName = "Model 5.1-X.2";
constexpr const char* kDialledNumber = "+1 555 0100";
constexpr int32_t kWaitMs = 2000;

DemoCall incomingCall(1);
DemoContact caller(L"Ada Lovelace", L"+44 20 7946 0000");
DemoCall outgoingCall(2);

std::string status(int32_t value) {
    return std::to_string(value);
}

// A runtime operation must return `expected`; anything else ends the demo.
void expect(const std::string& what, int32_t result, int32_t expected = VEXIL_OK) {
    if (result != expected) {
        throw DemoFailure(what + " returned " + status(result) + ", expected " + status(expected));
    }
}

// A control call must succeed.
void control(const std::string& what, int32_t result) {
    if (result != VEXILCTL_OK) {
        throw DemoFailure(what + " failed: " + vexilctl_status_text(result));
    }
}

const char* headsetShows(int32_t state) {
    switch (state) {
        case VEXILCTL_CALL_RINGING:
            return "ringing";
        case VEXILCTL_CALL_OUTGOING:
            return "outgoing";
        case VEXILCTL_CALL_ACTIVE:
            return "active";
        case VEXILCTL_CALL_HELD:
            return "held";
        case VEXILCTL_CALL_ENDED:
            return "ended";
        default:
            return "nothing";
    }
}

}  // namespace

void DemoScript::run() {
    Console::banner();
    connect();
    plugInHeadset();
    attachToHeadset();
    ringAndAnswerFromHeadset();
    dialFromHeadset();
    unplugHeadset();
    disconnect();

    if (inbox_.offRuntimeThread() != 0) {
        throw DemoFailure(status(static_cast<int32_t>(inbox_.offRuntimeThread())) +
                          " events arrived outside the runtime's thread");
    }
    int32_t commands = 0;
    control("vexilctl_command_count", vexilctl_command_count(&commands));
    Console::summary("Done: " + std::to_string(inbox_.total()) + " events arrived, all on the runtime's thread \"" +
                     kRuntimeThreadName + "\"; " + std::to_string(commands) + " call commands reached the headset.");
}

void DemoScript::connect() {
    expect("InitVexilRuntime", InitVexilRuntime());
    expect("getSessionManager", getSessionManager(&manager_));
    expect("getSessionManagerInt", getSessionManagerInt(&managerInt_));
    Console::line("InitVexilRuntime -> 0; got the session manager and its internal interface");

    ISession* session = nullptr;
    expect("registerSession", managerInt_->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE, &session));
    session_.reset(session);
    expect("ISession::registerCallback", session_->registerCallback(&calls_));
    expect("ISession::getPluginId", session_->getPluginId(&pluginId_));
    Console::line("registered session \"" + narrow(VEXIL_SOFTPHONE_COLLOQ) + "\" (kind " +
                  std::to_string(VEXIL_SESSION_KIND_SOFTPHONE) + ") as plug-in " + std::to_string(pluginId_) +
                  ", listening to its call events");

    expect("setPluginStatus(active)", manager_->setPluginStatus(pluginId_, VEXIL_PLUGIN_ACTIVE));
    ICallCommand* command = nullptr;
    expect("getCallCommand", session_->getCallCommand(&command));
    command_.reset(command);
    expect("ISessionManager::registerCallback", manager_->registerCallback(&devices_));
    Console::line("plug-in " + std::to_string(pluginId_) +
                  " is active, holds the call commands and listens to session-manager events");
}

void DemoScript::plugInHeadset() {
    char path[VEXILCTL_PATH_BYTES];
    control("vexilctl_make_headset_path", vexilctl_make_headset_path(kProductId, kSerial, path, sizeof path));
    headsetPath_ = path;
    Console::action(std::string("plug in headset \"") + kProductName + "\" (with display) at " + headsetPath_);
    control("vexilctl_add_headset", vexilctl_add_headset(path, kProductName, kProductId, 1));
    awaitEvent(HeardEvent::Kind::DeviceAttached, "the headset's attach event");
}

void DemoScript::attachToHeadset() {
    IDevice* device = nullptr;
    expect("getActiveDevice", session_->getActiveDevice(&device));
    device_.reset(device);
    wchar_t name[200] = {};
    expect("getProductName", device_->getProductName(name, 200));
    IHostCommand* host = nullptr;
    expect("getHostCommand", device_->getHostCommand(&host));
    const bool display = host->isFeatureSupported(VEXIL_FEATURE_DISPLAY);
    Console::line("attached to the active headset \"" + narrow(name) + "\", display: " + (display ? "yes" : "no"));

    ISoftphoneDefaults* defaults = nullptr;
    expect("getSoftphoneDefaults", manager_->getSoftphoneDefaults(&defaults));
    expect("setDefaultSoftphone(0)", defaults->setDefaultSoftphone(0));
    expect("setDefaultSoftphone(plug-in id)", defaults->setDefaultSoftphone(pluginId_));
    Console::line("made plug-in " + std::to_string(pluginId_) + " the default softphone");
}

void DemoScript::ringAndAnswerFromHeadset() {
    expect("incomingCall", command_->incomingCall(&incomingCall, &caller, 0, 0));
    Console::line("incomingCall -> 0; " + lastCommandSeen(incomingCall.getID()));

    Console::action("press answer on the headset");
    control("vexilctl_press_button",
            vexilctl_press_button(headsetPath_.c_str(), CALL_STATE_ACCEPT_CALL, incomingCall.getID(), nullptr));
    const HeardEvent answer = awaitEvent(HeardEvent::Kind::CallState, "the answer button");
    if (answer.code != CALL_STATE_ACCEPT_CALL || answer.callId != incomingCall.getID()) {
        throw DemoFailure("the answer button arrived as " + callStateName(answer.code) + " for call " +
                          std::to_string(answer.callId));
    }
    expect("answeredCall", command_->answeredCall(&incomingCall));
    Console::line("answered call " + std::to_string(incomingCall.getID()) + ": answeredCall -> 0; " +
                  lastCommandSeen(incomingCall.getID()));
}

void DemoScript::dialFromHeadset() {
    Console::action(std::string("dial ") + kDialledNumber + " on the headset");
    control("vexilctl_dial", vexilctl_dial(headsetPath_.c_str(), kDialledNumber, nullptr));
    const HeardEvent request = awaitEvent(HeardEvent::Kind::CallRequest, "the dialled number");
    if (request.number != kDialledNumber) {
        throw DemoFailure("the dialled number arrived as \"" + request.number + "\"");
    }
    expect("holdCall", command_->holdCall(&incomingCall));
    Console::line("put call " + std::to_string(incomingCall.getID()) + " on hold: holdCall -> 0; " +
                  lastCommandSeen(incomingCall.getID()));
    DemoContact callee(L"", wide(request.number));
    expect("outgoingCall", command_->outgoingCall(&outgoingCall, &callee, 0));
    Console::line("placed call " + std::to_string(outgoingCall.getID()) + ": outgoingCall -> 0; " +
                  lastCommandSeen(outgoingCall.getID()));
}

void DemoScript::unplugHeadset() {
    Console::action("unplug the headset");
    control("vexilctl_remove_headset", vexilctl_remove_headset(headsetPath_.c_str()));
    awaitEvent(HeardEvent::Kind::DeviceRemoved, "the headset's removal event");
    device_.reset();
    Console::line("released the headset's device");
}

void DemoScript::disconnect() {
    expect("setPluginStatus(inactive)", manager_->setPluginStatus(pluginId_, VEXIL_PLUGIN_INACTIVE));
    expect("ISession::unregisterCallback", session_->unregisterCallback(&calls_));
    command_.reset();
    expect("unregisterSession", manager_->unregisterSession(session_.get()));
    session_.reset();
    expect("ISessionManager::unregisterCallback", manager_->unregisterCallback(&devices_));
    Console::line("deactivated plug-in " + std::to_string(pluginId_) + ", unsubscribed, unregistered the session");
    ShutDownVexilRuntime();
    int32_t running = 1;
    control("vexilctl_is_running", vexilctl_is_running(&running));
    if (running != 0) {
        throw DemoFailure("the runtime still runs after ShutDownVexilRuntime");
    }
    Console::line("ShutDownVexilRuntime: the event thread is joined");
}

HeardEvent DemoScript::awaitEvent(HeardEvent::Kind kind, const std::string& what) {
    control("vexilctl_wait_idle", vexilctl_wait_idle(kWaitMs));
    const std::vector<HeardEvent> heard = inbox_.take();
    if (heard.size() != 1 || heard.front().kind != kind) {
        throw DemoFailure("expected " + what + ", heard " + std::to_string(heard.size()) + " other events");
    }
    return heard.front();
}

std::string DemoScript::lastCommandSeen(int32_t callId) {
    int32_t count = 0;
    control("vexilctl_command_count", vexilctl_command_count(&count));
    VexilCtlCommand command{};
    control("vexilctl_command_at", vexilctl_command_at(count - 1, &command));
    int32_t state = 0;
    control("vexilctl_get_call_state", vexilctl_get_call_state(callId, &state));
    std::string seen = "the runtime read call " + std::to_string(command.callId);
    if (command.hasContact != 0) {
        seen += std::string(", contact \"") + command.contactName + "\" <" + command.contactPhone + ">";
    }
    return seen + "; the headset shows it " + headsetShows(state);
}

}  // namespace demo
