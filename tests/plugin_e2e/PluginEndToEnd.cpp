#include "PluginEndToEnd.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace e2e {

namespace {

namespace fs = std::filesystem;
using hostharness::HarnessStatus;

constexpr const char* kClientLinePrefix = "BQLColloqPlugin v.3.8.51535.41614: ";

std::string makeFolder() {
    std::string pattern = (fs::temp_directory_path() / "bql-e2e-XXXXXX").string();
    const char* made = mkdtemp(pattern.data());
    return made ? std::string(made) : std::string();
}

// Whether an earlier test of this process has loaded the plug-in.
bool pluginLoadedBefore = false;

}  // namespace

void PluginEndToEnd::SetUp() {
    folder = makeFolder();
    ASSERT_FALSE(folder.empty());
    // The plug-in's local log and the hub's ports stay inside this test's folder.
    setenv("XDG_DATA_HOME", (folder + "/data").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (folder + "/config").c_str(), 1);
    setenv("BQL_PORT_DIR", (folder + "/ports").c_str(), 1);

    int32_t running = 1;
    ASSERT_EQ(vexilctl_is_running(&running), VEXILCTL_OK);
    ASSERT_EQ(running, 0) << "a previous test left the runtime running";
    ASSERT_EQ(vexilctl_reset(), VEXILCTL_OK);
    client().reset();
    ASSERT_EQ(plugin.load(BQL_PLUGIN_PATH), HarnessStatus::Ok) << plugin.lastError();
    if (pluginLoadedBefore) {
        clearHeadsetPresenceLeftInProcess();
    }
    pluginLoadedBefore = true;
}

void PluginEndToEnd::clearHeadsetPresenceLeftInProcess() {
    const Headset headset = plugHeadset(0x0fff, "LEFTOVER", "Leftover");
    initializePlugin();
    ASSERT_EQ(vexilctl_remove_headset(headset.path.c_str()), VEXILCTL_OK);
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);
    chooseClientDevice(clientDeviceId(headset));
    uninitializePlugin();
    ASSERT_EQ(vexilctl_reset(), VEXILCTL_OK);
    client().reset();
}

void PluginEndToEnd::TearDown() {
    if (plugin.isInitialized()) {
        uninitializePlugin();
    }
    EXPECT_EQ(plugin.unload(), HarnessStatus::Ok);
    if (!errorsExpected) {
        for (const auto& line : client().journal().entriesOf(HostCall::Log)) {
            EXPECT_NE(line.severity, 1) << "unexpected failure line in the client's log: " << line.text;
        }
        const std::string local = localLog();
        EXPECT_EQ(local.find(" ERROR "), std::string::npos) << "unexpected error in the local log:\n" << local;
    }
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

Headset PluginEndToEnd::plugHeadset(uint16_t productId, const std::string& serial, const std::string& productName,
                                    bool hasDisplay) {
    char path[VEXILCTL_PATH_BYTES] = {};
    EXPECT_EQ(vexilctl_make_headset_path(productId, serial.c_str(), path, sizeof path), VEXILCTL_OK);
    EXPECT_EQ(vexilctl_add_headset(path, productName.c_str(), productId, hasDisplay ? 1 : 0), VEXILCTL_OK);
    return Headset{path, productName, productId};
}

std::string PluginEndToEnd::clientDeviceId(const Headset& headset) {
    std::string name = headset.productName;
    const auto dot = name.find('.');
    if (dot != std::string::npos) {
        name[dot] = '_';
    }
    return "AppleUSBAudioEngine:Brimquell:" + name;
}

void PluginEndToEnd::initializePlugin() {
    const uint64_t mark = clientMark();
    int result = -1;
    ASSERT_EQ(plugin.initialize(client().entryPoint(), &result), HarnessStatus::Ok);
    ASSERT_EQ(result, 0);
    expectClientLog("BQLColloqPlugin v.3.8.51535.41614: Connected to VexilRT successfully", mark);
}

int PluginEndToEnd::callInitialize() {
    int result = -1;
    EXPECT_EQ(plugin.initialize(client().entryPoint(), &result), HarnessStatus::Ok);
    return result;
}

void PluginEndToEnd::uninitializePlugin() {
    int result = -1;
    ASSERT_EQ(plugin.uninitialize(&result), HarnessStatus::Ok);
    EXPECT_EQ(result, 0);
}

void PluginEndToEnd::chooseClientDevice(const std::string& clientId) {
    hostharness::CallbackArgs args;
    args.device = clientId;
    ASSERT_EQ(client().callbacks().fire(CallbackSlot::OnActiveDeviceChanged, args), HarnessStatus::Ok);
}

void PluginEndToEnd::startWithHeadset(const Headset& headset) {
    initializePlugin();
    chooseClientDevice(clientDeviceId(headset));
}

void PluginEndToEnd::fireCall(CallbackSlot slot, int32_t id, int32_t clientState, const std::string& number,
                              const std::string& name) {
    hostharness::CallDescription call;
    call.id = id;
    call.state = clientState;
    call.number = number;
    call.name = name;
    int result = -1;
    ASSERT_EQ(client().callbacks().fireCallEvent(slot, call, &result), HarnessStatus::Ok);
    EXPECT_EQ(result, 0);
}

void PluginEndToEnd::fireAudio(CallbackSlot slot) {
    int result = -1;
    ASSERT_EQ(client().callbacks().fire(slot, hostharness::CallbackArgs{}, &result), HarnessStatus::Ok);
    EXPECT_EQ(result, 0);
}

void PluginEndToEnd::connectIncomingCall(int32_t id, const std::string& number, const std::string& name) {
    fireCall(CallbackSlot::OnIncoming, id, clientstate::kRinging, number, name);
    fireCall(CallbackSlot::OnConnected, id, clientstate::kConnected, number, name);
    drainWorker();
    EXPECT_EQ(headsetCallState(id), VEXILCTL_CALL_ACTIVE) << "call " << id;
}

void PluginEndToEnd::drainWorker() {
    // Everything the runtime raised so far is on the event queue once it is idle. A report
    // without a device then makes the worker write the one line no other event writes, also
    // while the plug-in ignores the client's callbacks.
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);
    const uint64_t mark = clientMark();
    ASSERT_EQ(vexilctl_press_button("", CALL_STATE_ACCEPT_CALL, -1, nullptr), VEXILCTL_OK);
    expectPluginLine(ACCESSORY_LOG_MILESTONE, "processVexilEvent(EventPtr comeEvent): Fake device, ignore events!",
                     mark);
}

hostharness::RecordedCall PluginEndToEnd::expectClientCall(HostCall call, const std::string& device, uint64_t after) {
    hostharness::CallExpectation expected;
    expected.call = call;
    expected.device = device;
    expected.afterSequence = after;
    hostharness::RecordedCall matched;
    EXPECT_EQ(client().journal().waitFor(expected, kWait, &matched), HarnessStatus::Ok)
        << "no " << hostharness::hostCallName(call) << "(" << device << ")";
    return matched;
}

hostharness::RecordedCall PluginEndToEnd::expectClientLog(const std::string& text, uint64_t after) {
    hostharness::LogExpectation expected;
    expected.text = text;
    expected.afterSequence = after;
    hostharness::RecordedCall matched;
    EXPECT_EQ(client().journal().waitForLog(expected, kWait, &matched), HarnessStatus::Ok)
        << "no client log line: " << text;
    return matched;
}

RecordedCall PluginEndToEnd::expectPluginLine(int32_t severity, const std::string& message, uint64_t after) {
    hostharness::LogExpectation expected;
    expected.text = pluginLine(message);
    expected.severity = severity;
    expected.afterSequence = after;
    RecordedCall matched;
    EXPECT_EQ(client().journal().waitForLog(expected, kWait, &matched), HarnessStatus::Ok)
        << "no client log line at severity " << severity << ": " << message;
    return matched;
}

void PluginEndToEnd::expectPluginLinesInOrder(int32_t severity, std::initializer_list<std::string> messages,
                                              uint64_t after) {
    for (const std::string& message : messages) {
        after = expectPluginLine(severity, message, after).sequence;
    }
}

bool PluginEndToEnd::hasPluginLine(const std::string& message, uint64_t after) {
    const std::string text = pluginLine(message);
    for (const RecordedCall& line : client().journal().entriesOf(HostCall::Log)) {
        if (line.sequence > after && line.text == text) {
            return true;
        }
    }
    return false;
}

std::string PluginEndToEnd::pluginLine(const std::string& message) { return kClientLinePrefix + message; }

std::vector<RecordedCall> PluginEndToEnd::clientCallsOf(HostCall call, uint64_t after) {
    std::vector<RecordedCall> later;
    for (RecordedCall& entry : client().journal().entriesOf(call)) {
        if (entry.sequence > after) {
            later.push_back(std::move(entry));
        }
    }
    return later;
}

std::vector<VexilCtlCommand> PluginEndToEnd::runtimeCommands() {
    int32_t count = 0;
    EXPECT_EQ(vexilctl_command_count(&count), VEXILCTL_OK);
    std::vector<VexilCtlCommand> commands(static_cast<std::size_t>(count));
    for (int32_t i = 0; i < count; ++i) {
        EXPECT_EQ(vexilctl_command_at(i, &commands[static_cast<std::size_t>(i)]), VEXILCTL_OK);
    }
    return commands;
}

std::vector<VexilCtlCommand> PluginEndToEnd::runtimeCommandsOf(int32_t command) {
    std::vector<VexilCtlCommand> matching;
    for (const VexilCtlCommand& entry : runtimeCommands()) {
        if (entry.command == command) {
            matching.push_back(entry);
        }
    }
    return matching;
}

std::vector<VexilCtlCommand> PluginEndToEnd::expectRuntimeCommands(int32_t command, std::size_t count) {
    drainWorker();
    std::vector<VexilCtlCommand> matching = runtimeCommandsOf(command);
    EXPECT_EQ(matching.size(), count) << "runtime command " << command;
    return matching;
}

std::size_t PluginEndToEnd::runtimeMark() {
    int32_t count = 0;
    EXPECT_EQ(vexilctl_command_count(&count), VEXILCTL_OK);
    return static_cast<std::size_t>(count);
}

std::vector<VexilCtlCommand> PluginEndToEnd::runtimeCommandsSince(std::size_t mark) {
    std::vector<VexilCtlCommand> commands = runtimeCommands();
    commands.erase(commands.begin(), commands.begin() + static_cast<std::ptrdiff_t>(std::min(mark, commands.size())));
    return commands;
}

int32_t PluginEndToEnd::headsetCallState(int32_t callId) {
    int32_t state = 0;
    EXPECT_EQ(vexilctl_get_call_state(callId, &state), VEXILCTL_OK);
    return state;
}

std::string PluginEndToEnd::runtimeActiveDevice() {
    char path[VEXILCTL_PATH_BYTES] = {};
    const int32_t status = vexilctl_get_active_device(path, sizeof path);
    EXPECT_TRUE(status == VEXILCTL_OK || status == VEXILCTL_E_NO_DEVICE) << vexilctl_status_text(status);
    return path;
}

VexilCtlSession PluginEndToEnd::runtimeSession() {
    VexilCtlSession session{};
    EXPECT_EQ(vexilctl_get_session(&session), VEXILCTL_OK);
    return session;
}

bool PluginEndToEnd::runtimeRunning() {
    int32_t running = 0;
    EXPECT_EQ(vexilctl_is_running(&running), VEXILCTL_OK);
    return running != 0;
}

void PluginEndToEnd::press(const Headset& headset, int32_t code, int32_t callId, const char* keys) {
    ASSERT_EQ(vexilctl_press_button(headset.path.c_str(), code, callId, keys), VEXILCTL_OK);
}

void PluginEndToEnd::dial(const Headset& headset, const std::string& number, const char* alternateNumber) {
    ASSERT_EQ(vexilctl_dial(headset.path.c_str(), number.c_str(), alternateNumber), VEXILCTL_OK);
}

void PluginEndToEnd::reportCallState(const Headset& headset, int32_t code) {
    ASSERT_EQ(vexilctl_report_call_state(headset.path.c_str(), code), VEXILCTL_OK);
}

std::string PluginEndToEnd::localLog() const {
    std::ifstream file(folder + "/data/Brimquell/logs/Vexil_Colloq.log");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace e2e

namespace e2e {

std::vector<std::string> PluginEndToEnd::localLogMessages(const std::string& level, const std::string& function) const {
    // Lines read "<date> <time> <level> [<thread>] <function> <> <message>".
    const std::string lead = function + " <> ";
    std::vector<std::string> messages;
    std::istringstream lines(localLog());
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string date;
        std::string time;
        std::string lineLevel;
        fields >> date >> time >> lineLevel;
        const std::size_t threadEnd = line.find("] ");
        if (lineLevel != level || threadEnd == std::string::npos ||
            line.compare(threadEnd + 2, lead.size(), lead) != 0) {
            continue;
        }
        messages.push_back(line.substr(threadEnd + 2 + lead.size()));
    }
    return messages;
}

void PluginEndToEnd::expectLocalLog(const std::string& level, const std::string& function,
                                    const std::string& message) const {
    const std::vector<std::string> messages = localLogMessages(level, function);
    EXPECT_NE(std::find(messages.begin(), messages.end(), message), messages.end())
        << "no local " << level << " line from " << function << ": " << message << "\nlocal log:\n"
        << localLog();
}

void StartedWithOneHeadset::SetUp() {
    PluginEndToEnd::SetUp();
    if (HasFatalFailure()) {
        return;
    }
    headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(headset);
}

void WithTwoHeadsets::SetUp() {
    PluginEndToEnd::SetUp();
    if (HasFatalFailure()) {
        return;
    }
    first = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    second = plugHeadset(0x0c2d, "SN2", "Model 7.2");
}

}  // namespace e2e
