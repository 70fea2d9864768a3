#include "PluginEndToEnd.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace e2e {

namespace {

namespace fs = std::filesystem;
using hostharness::HarnessStatus;

// A call id no test uses: onHold for it makes the worker log one line and do nothing else.
constexpr int32_t kBarrierCallId = 0x7ffffff0;

std::string makeFolder() {
    std::string pattern = (fs::temp_directory_path() / "bql-e2e-XXXXXX").string();
    const char* made = mkdtemp(pattern.data());
    return made ? std::string(made) : std::string();
}

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

void PluginEndToEnd::drainWorker() {
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);
    const uint64_t mark = clientMark();
    fireCall(CallbackSlot::OnHold, kBarrierCallId, 10);
    expectClientLog("BQLColloqPlugin v.3.8.51535.41614: into pluginThread() case: ON_HOLD_CALL_EVENT", mark);
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

int32_t PluginEndToEnd::headsetCallState(int32_t callId) {
    int32_t state = 0;
    EXPECT_EQ(vexilctl_get_call_state(callId, &state), VEXILCTL_OK);
    return state;
}

void PluginEndToEnd::press(const Headset& headset, int32_t code, int32_t callId, const char* keys) {
    ASSERT_EQ(vexilctl_press_button(headset.path.c_str(), code, callId, keys), VEXILCTL_OK);
}

void PluginEndToEnd::dial(const Headset& headset, const std::string& number) {
    ASSERT_EQ(vexilctl_dial(headset.path.c_str(), number.c_str(), nullptr), VEXILCTL_OK);
}

std::string PluginEndToEnd::localLog() const {
    std::ifstream file(folder + "/data/Brimquell/logs/Vexil_Colloq.log");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace e2e
