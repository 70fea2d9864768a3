#include "PluginUnderFuzz.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>
#include <vector>

#include "hostharness/HostHarness.h"
#include "hubproxy/ColloqRecords.h"
#include "hubproxy/PipeNames.h"
#include "plugin/BQLColloqPlugin.h"
#include "vexilctl/VexilControl.h"

namespace fuzzsupport {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using hostharness::HarnessStatus;
using hostharness::HostHarness;

// Long enough for a sanitized worker on a busy machine; a worker that takes longer is stuck.
constexpr auto kWorkerTimeout = 20s;
constexpr auto kProxyProbeInterval = 50ms;
constexpr int kProxyProbes = 400;

PluginUnderFuzz* instance = nullptr;
std::vector<PluggedHeadset> headsets;

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "fuzz set-up: %s\n", what.c_str());
    std::fflush(stderr);
    std::abort();
}

void writeFile(const fs::path& file, const std::string& text) {
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << text;
    if (!out) {
        fail("cannot write " + file.string());
    }
}

// Only errors reach the local log, so that millions of runs do not fill the disk.
std::string localLogConfiguration(const std::string& logFile) {
    return "log4j.rootLogger=ERROR, file\n"
           "log4j.appender.file=org.apache.log4j.FileAppender\n"
           "log4j.appender.file.File=" + logFile + "\n"
           "log4j.appender.file.layout=org.apache.log4j.PatternLayout\n"
           "log4j.appender.file.layout.ConversionPattern=%p %X{function} %m%n\n";
}

// The hub check runs "ps -Ac | grep ..." through the shell; this "ps" answers instead of the
// machine's process table.
std::string standInPs(HeadsetSide side) {
    return side == HeadsetSide::Hub ? "#!/bin/sh\necho '  1 ?        00:00:00 Brimquell Hub'\n" : "#!/bin/sh\nexit 0\n";
}

PluggedHeadset plug(uint16_t productId, const char* serial, const char* productName, const char* vendorPath) {
    char path[VEXILCTL_PATH_BYTES] = {};
    if (vendorPath != nullptr) {
        std::snprintf(path, sizeof path, "%s", vendorPath);
    } else if (vexilctl_make_headset_path(productId, serial, path, sizeof path) != VEXILCTL_OK) {
        fail("cannot make a headset path");
    }
    if (vexilctl_add_headset(path, productName, productId, 1) != VEXILCTL_OK) {
        fail(std::string("cannot plug in ") + path);
    }
    // The client's identifier carries the name with its first "." as "_".
    std::string name = productName;
    if (const auto dot = name.find('.'); dot != std::string::npos) {
        name[dot] = '_';
    }
    return PluggedHeadset{path, productName, "AppleUSBAudioEngine:Brimquell:" + name};
}

hostharness::CallbackArgs deviceChoice(const std::string& clientDeviceId) {
    hostharness::CallbackArgs args;
    args.device = clientDeviceId;
    return args;
}

}  // namespace

PluginUnderFuzz& PluginUnderFuzz::start(HeadsetSide side) {
    if (instance == nullptr) {
        instance = new PluginUnderFuzz(side);
    } else if (instance->side != side) {
        fail("the plug-in was started for the other handler");
    }
    return *instance;
}

PluginUnderFuzz::PluginUnderFuzz(HeadsetSide chosen) : side(chosen) {
    prepareFolder();
    plugHeadsets();
    HostHarness& host = HostHarness::instance();
    host.reset();
    BQLColloqPlugin::getInstance()->Start(host.entryPoint());
    hostharness::LogExpectation connected;
    connected.text = "Connected to VexilRT successfully";
    connected.match = hostharness::TextMatch::Contains;
    if (host.journal().waitForLog(connected, kWorkerTimeout) != HarnessStatus::Ok) {
        fail("the plug-in did not connect");
    }
    // Stopped before the process's static objects go, which its threads still use.
    std::atexit(&PluginUnderFuzz::stopAtExit);
    if (side == HeadsetSide::Hub) {
        waitUntilProxyServes();
    }
    // A headset of the maker as the client's device makes the plug-in active.
    if (host.callbacks().fire(hostharness::CallbackSlot::OnActiveDeviceChanged,
                              deviceChoice(headsets.front().clientDeviceId)) != HarnessStatus::Ok ||
        !BQLColloqPlugin::isPluginActive.load()) {
        fail("the plug-in did not become active");
    }
    drainWorker();
}

void PluginUnderFuzz::prepareFolder() {
    std::string pattern = (fs::temp_directory_path() / "bql-fuzz-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        fail("cannot make a scratch folder");
    }
    folder = pattern;
    const fs::path root(folder);
    writeFile(root / "config" / "Brimquell" / "VexilRT" / "ColloqPlugin" / "Vexil_Colloq.log4cxx",
              localLogConfiguration((root / "local.log").string()));
    writeFile(root / "bin" / "ps", standInPs(side));
    fs::permissions(root / "bin" / "ps", fs::perms::owner_all);
    const char* path = std::getenv("PATH");
    setenv("PATH", ((root / "bin").string() + ":" + (path ? path : "/usr/bin:/bin")).c_str(), 1);
    setenv("XDG_DATA_HOME", (root / "data").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (root / "config").c_str(), 1);
    setenv("BQL_PORT_DIR", (root / "ports").c_str(), 1);
    hubPortPath = (root / "ports" / MAC_PIPE_COLLOQ_SIDE_).string();
}

void PluginUnderFuzz::plugHeadsets() {
    if (vexilctl_reset() != VEXILCTL_OK) {
        fail("the runtime is already running");
    }
    headsets.push_back(plug(0xac27, "FUZZ1", "Model 5.1-X.2", nullptr));
    headsets.push_back(plug(0x0142, "FUZZ2", "Voyage 60", nullptr));
    // Another maker's headset, which the runtime lists as well.
    headsets.push_back(plug(0x0a45, nullptr, "H390 USB", "hid/vid_046d&pid_0a45/OTHER1"));
}

void PluginUnderFuzz::waitUntilProxyServes() {
    // A foreground request reaches the client only through the hub handler; the direct handler
    // reads the same code as an end of call and does nothing for call -1.
    const ColloqCallArgs probe = BuildHeadsetEvent(COLLOQ_FOREGROUND, -1, L"probe", "", "");
    hostharness::CallExpectation foreground;
    foreground.call = hostharness::HostCall::MakeCall;
    foreground.number = "";
    for (int attempt = 0; attempt < kProxyProbes; ++attempt) {
        sendToHubPort(reinterpret_cast<const uint8_t*>(&probe), sizeof probe);
        if (HostHarness::instance().journal().waitFor(foreground, kProxyProbeInterval) == HarnessStatus::Ok) {
            drainHubPort();
            return;
        }
    }
    fail("the hub handler never served");
}

BQLColloqPlugin& PluginUnderFuzz::plugin() { return *BQLColloqPlugin::getInstance(); }

const Accessory_CallControlCallback_v1_0_t& PluginUnderFuzz::callbacks() {
    const Accessory_CallControlCallback_v1_0_t* table = HostHarness::instance().callbacks().registeredTable();
    if (table == nullptr) {
        fail("the plug-in has no callbacks registered");
    }
    return *table;
}

const PluggedHeadset& PluginUnderFuzz::headset(std::size_t index) const { return headsets.at(index); }

std::size_t PluginUnderFuzz::headsetCount() const { return headsets.size(); }

void PluginUnderFuzz::drainWorker() {
    const std::string number = "drain-" + std::to_string(++markers);
    plugin().getEventQueue().Push(std::make_shared<BQLColloqEvent>(BQL_COLLOQ_MAKE_CALL_EVENT, "phone", number));
    waitForDialledMarker(number);
}

void PluginUnderFuzz::sendToHubPort(const uint8_t* data, std::size_t size) {
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    if (socket < 0) {
        fail("cannot open a socket");
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s", hubPortPath.c_str());
    // The port is missing until the hub check has opened the pipe; the block is then lost, as
    // the hub's would be.
    (void)::sendto(socket, data, size, 0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(socket);
}

void PluginUnderFuzz::drainHubPort() {
    const std::string number = "drain-" + std::to_string(++markers);
    const std::wstring wide(number.begin(), number.end());
    const ColloqCallArgs dial = BuildDialRequest(wide.c_str());
    sendToHubPort(reinterpret_cast<const uint8_t*>(&dial), sizeof dial);
    waitForDialledMarker(number);
}

void PluginUnderFuzz::waitForDialledMarker(const std::string& number) {
    hostharness::CallExpectation dialled;
    dialled.call = hostharness::HostCall::MakeCall;
    dialled.number = number;
    hostharness::Journal& journal = HostHarness::instance().journal();
    if (journal.waitFor(dialled, kWorkerTimeout) != HarnessStatus::Ok) {
        fail("the worker did not handle " + number + " in time: it ended or hangs");
    }
    // What the plug-in told the client so far is of no further use; the journal stays small.
    journal.clear();
}

void PluginUnderFuzz::stopAtExit() {
    if (instance == nullptr) {
        return;
    }
    BQLColloqPlugin::getInstance()->Stop();
    std::error_code ignored;
    fs::remove_all(instance->folder, ignored);
}

}  // namespace fuzzsupport
