// The hub simulator as a separate process, talking to the plug-in's endpoint in this process.
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "BlockInbox.h"
#include "ChildProcess.h"
#include "JsonLine.h"
#include "NamedPipe.h"
#include "bqltest/LocalLog.h"
#include "bqltest/ScopedEnvironment.h"
#include "bqltest/TempDirectory.h"
#include "hubproxy/CClientPipe.h"
#include "hubproxy/CColloqProxy.h"
#include "hubproxy/ColloqRecordText.h"
#include "hubproxy/PipeNames.h"

namespace {

// Stands in for the hub handler: keeps every record it is notified of.
struct TestObserver {
    void notifyPluginAboutEvent(const ColloqCallArgs& record) { records.put(record); }
    bqltest::Inbox<ColloqCallArgs> records;
};

using Endpoint = CColloqProxy<TestObserver>;

bool ExitedWith(const std::optional<int>& status, int code) {
    return status && WIFEXITED(*status) && WEXITSTATUS(*status) == code;
}

bool Exists(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

class HubSimProcessTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(log.ready());
        endpoint.registerCallback(&observer);
    }

    // Starts the simulator and waits until it owns the hub's port.
    std::unique_ptr<ChildProcess> StartSimulator(std::vector<std::string> arguments = {"--json"},
                                                 const ChildInput& input = {}) {
        auto simulator = std::make_unique<ChildProcess>(HUB_SIM_PATH, arguments, input);
        EXPECT_TRUE(simulator->started());
        const auto listening = simulator->ReadLineContaining("listening");
        EXPECT_TRUE(listening.has_value()) << "the simulator did not get its port";
        return simulator;
    }

    // The simulator's next JSON line that is a record with the given direction.
    boost::property_tree::ptree NextRecord(ChildProcess& simulator, const std::string& direction) {
        for (;;) {
            const auto line = simulator.ReadLine();
            if (!line) {
                ADD_FAILURE() << "no " << direction << " record from the simulator";
                return {};
            }
            auto json = ParseJsonLine(*line);
            if (json.get<std::string>("direction", "") == direction) {
                return json;
            }
        }
    }

    // Sends one command and returns the record the endpoint received for it.
    ColloqCallArgs Command(ChildProcess& simulator, const std::string& command) {
        const std::size_t before = observer.records.items().size();
        EXPECT_TRUE(simulator.WriteLine(command));
        EXPECT_TRUE(observer.records.waitFor(before + 1)) << command;
        const auto records = observer.records.items();
        return records.size() > before ? records[before] : ColloqCallArgs{};
    }

    std::string HubPort() const { return ports / "com.bqlhub.hub"; }

    bqltest::TempDirectory ports;
    bqltest::ScopedEnvironment portDirectory{"BQL_PORT_DIR", ports.path()};
    bqltest::LocalLogCapture log;
    TestObserver observer;
    Endpoint endpoint;
};

TEST_F(HubSimProcessTest, SimulatorNamesItsProcessBrimquellHub) {
    auto simulator = StartSimulator();

    std::ifstream comm("/proc/" + std::to_string(simulator->pid()) + "/comm");
    std::string name;
    std::getline(comm, name);
    EXPECT_EQ(name, "Brimquell Hub");
    EXPECT_EQ(std::system("ps -Ac | grep  'Brimquell Hub' > /dev/null"), 0);
}

TEST_F(HubSimProcessTest, CallRecordOfThePlugInReachesTheSimulatorWithEveryFieldIntact) {
    auto simulator = StartSimulator();

    endpoint.Send(MESSAGE_TYPE_CALL, COLLOQ_INCOMING_CALL, 42, L"Zo\u00eb \U0001F600 \U0001D11E", L"+49 30 \U0001F4DE",
                  "first text", "12#");

    const auto json = NextRecord(*simulator, "received");
    EXPECT_EQ(json.get<int>("messageType", -1), 0);
    EXPECT_EQ(json.get<int>("callState", -1), 15);
    EXPECT_EQ(json.get<std::string>("callStateName", ""), "incoming");
    EXPECT_EQ(json.get<int>("deviceAction", -1), 0);
    EXPECT_EQ(json.get<int>("callId", -1), 42);
    EXPECT_EQ(json.get<std::string>("contactName", ""), "Zo\xc3\xab \xf0\x9f\x98\x80 \xf0\x9d\x84\x9e");
    EXPECT_EQ(json.get<std::string>("phoneNumber", ""), "+49 30 \xf0\x9f\x93\x9e");
    EXPECT_EQ(json.get<std::string>("extraText", ""), "first text");
    EXPECT_EQ(json.get<std::string>("dtmfKeys", ""), "12#");
    EXPECT_EQ(json.get<std::string>("devicePath", "?"), "");
    EXPECT_EQ(json.get<unsigned>("productId", 1), 0u);
}

TEST_F(HubSimProcessTest, DeviceRequestsOfThePlugInReachTheSimulator) {
    auto simulator = StartSimulator();

    endpoint.SendSetActiveDevice(0x123);
    const auto set = NextRecord(*simulator, "received");
    endpoint.SendGetActiveDevice();
    const auto get = NextRecord(*simulator, "received");

    EXPECT_EQ(set.get<int>("messageType", -1), 2);
    EXPECT_EQ(set.get<int>("callState", -1), 20);
    EXPECT_EQ(set.get<int>("deviceAction", -1), 3);
    EXPECT_EQ(set.get<unsigned>("productId", 0), 0x123u);
    EXPECT_EQ(get.get<int>("deviceAction", -1), 2);
    EXPECT_EQ(get.get<unsigned>("productId", 1), 0u);
}

TEST_F(HubSimProcessTest, EveryHeadsetActionReachesTheEndpointWithItsFields) {
    auto simulator = StartSimulator();
    const std::vector<std::pair<std::string, uint32_t>> actions = {
        {"device-selected", 1}, {"foreground", 2}, {"foreground-when-idle", 3}, {"foreground-alt", 4},
        {"foreground-when-idle-alt", 5}, {"accept", 6}, {"terminate", 7}, {"terminate-alt", 8},
        {"hold", 9}, {"resume", 10}, {"mute", 11}, {"unmute", 12}, {"dtmf", 13}, {"reject", 14},
        {"device-change", 19}};

    for (const auto& [name, code] : actions) {
        const ColloqCallArgs record = Command(*simulator, name + " call=" + std::to_string(100 + code) +
                                                              " device=\"hid/vid_2f0c&pid_0a1b/\xf0\x9f\x98\x80 SN\""
                                                              " extra=x" + std::to_string(code) + " keys=\"Model 5.1-X.2\"");
        EXPECT_EQ(record.messageType, MESSAGE_TYPE_CALL) << name;
        EXPECT_EQ(record.callState, code) << name;
        EXPECT_EQ(record.deviceAction, 0u) << name;
        EXPECT_EQ(record.callId, static_cast<int32_t>(100 + code)) << name;
        EXPECT_EQ(ReadWideField(record.devicePath), L"hid/vid_2f0c&pid_0a1b/\U0001F600 SN") << name;
        EXPECT_EQ(ReadNarrowField(record.extraText), "x" + std::to_string(code)) << name;
        EXPECT_EQ(ReadNarrowField(record.dtmfKeys), "Model 5.1-X.2") << name;
    }
}

TEST_F(HubSimProcessTest, HeadsetEventsCarryTheActiveDeviceUnlessOneIsGiven) {
    auto simulator = StartSimulator({"--json", "--device", "hid/vid_2f0c&pid_0a1b/SN7"});

    const ColloqCallArgs dtmf = Command(*simulator, "dtmf call=5 keys=12#");

    EXPECT_EQ(dtmf.callState, COLLOQ_DTMF_KEY);
    EXPECT_EQ(ReadWideField(dtmf.devicePath), L"hid/vid_2f0c&pid_0a1b/SN7");
    EXPECT_EQ(ReadNarrowField(dtmf.dtmfKeys), "12#");
}

TEST_F(HubSimProcessTest, DialRequestAndDeviceReportsReachTheEndpoint) {
    auto simulator = StartSimulator();

    const ColloqCallArgs dial = Command(*simulator, "dial \"+1 555 \xf0\x9d\x84\x9e\"");
    const ColloqCallArgs active = Command(*simulator, "active \"hid/vid_2f0c&pid_0a1b/\xf0\x9f\x98\x80\"");
    const ColloqCallArgs none = Command(*simulator, "no-active");

    EXPECT_EQ(dial.messageType, MESSAGE_TYPE_DIAL);
    EXPECT_EQ(ReadWideField(dial.phoneNumber), L"+1 555 \U0001D11E");
    EXPECT_EQ(active.messageType, MESSAGE_TYPE_ACTIVE_DEVICE);
    EXPECT_EQ(active.deviceAction, static_cast<uint32_t>(DEVICE_ACTION_ACTIVE));
    EXPECT_EQ(ReadWideField(active.devicePath), L"hid/vid_2f0c&pid_0a1b/\U0001F600");
    EXPECT_EQ(none.messageType, MESSAGE_TYPE_ACTIVE_DEVICE);
    EXPECT_EQ(none.deviceAction, static_cast<uint32_t>(DEVICE_ACTION_NONE));
    EXPECT_EQ(ReadWideField(none.devicePath), L"");
}

TEST_F(HubSimProcessTest, SimulatorAnswersGetRequestsWithTheDeviceItMadeActive) {
    auto simulator = StartSimulator({"--json", "--device", "hid/vid_2f0c&pid_0a1b/SN9"});

    endpoint.SendGetActiveDevice();
    ASSERT_TRUE(observer.records.waitFor(1));
    endpoint.SendSetActiveDevice(0x0a1b);
    endpoint.SendGetActiveDevice();
    ASSERT_TRUE(observer.records.waitFor(2));
    endpoint.SendSetActiveDevice(0x0a1c);
    endpoint.SendGetActiveDevice();
    ASSERT_TRUE(observer.records.waitFor(3));
    endpoint.SendSetActiveDevice(0);
    endpoint.SendGetActiveDevice();
    ASSERT_TRUE(observer.records.waitFor(4));

    const auto answers = observer.records.items();
    EXPECT_EQ(answers[0].deviceAction, static_cast<uint32_t>(DEVICE_ACTION_ACTIVE));
    EXPECT_EQ(ReadWideField(answers[0].devicePath), L"hid/vid_2f0c&pid_0a1b/SN9");
    EXPECT_EQ(ReadWideField(answers[1].devicePath), L"hid/vid_2f0c&pid_0a1b/SN9") << "the same product stays";
    EXPECT_EQ(ReadWideField(answers[2].devicePath), L"hid/vid_2f0c&pid_0a1c/hub-sim");
    EXPECT_EQ(answers[3].deviceAction, static_cast<uint32_t>(DEVICE_ACTION_NONE));
}

TEST_F(HubSimProcessTest, SimulatorEndsAtTheEndOfItsInputAndReleasesItsPort) {
    auto simulator = StartSimulator();
    ASSERT_TRUE(Exists(HubPort()));

    simulator->CloseInput();

    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
    EXPECT_FALSE(Exists(HubPort()));
}

TEST_F(HubSimProcessTest, SimulatorEndsOnSigtermAndReleasesItsPort) {
    auto simulator = StartSimulator();

    simulator->Signal(SIGTERM);

    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
    EXPECT_FALSE(Exists(HubPort()));
}

TEST_F(HubSimProcessTest, SimulatorEndsWhenItsTerminalHangsUpAndReleasesItsPort) {
    auto simulator = StartSimulator();

    simulator->Signal(SIGHUP);

    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
    EXPECT_FALSE(Exists(HubPort()));
}

TEST_F(HubSimProcessTest, SimulatorEndsOnSigintDuringASleepAndReleasesItsPort) {
    auto simulator = StartSimulator();
    ASSERT_TRUE(simulator->WriteLine("sleep 86400000"));
    ASSERT_TRUE(simulator->WriteLine("dial 1"));

    simulator->Signal(SIGINT);

    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
    EXPECT_FALSE(Exists(HubPort()));
    EXPECT_TRUE(observer.records.items().empty()) << "the command after the sleep ran";
}

TEST_F(HubSimProcessTest, QuitEndsTheSimulator) {
    auto simulator = StartSimulator();

    simulator->WriteLine("quit");

    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
    EXPECT_FALSE(Exists(HubPort()));
}

TEST_F(HubSimProcessTest, CommandsRunInOrderFromCommandLineScriptAndInput) {
    const bqltest::TempDirectory scripts;
    const std::string script = scripts / "script.txt";
    std::ofstream(script) << "# numbers two and three\ndial 2\nsleep 10\ndial 3\n";
    auto simulator = StartSimulator({"--json", "-e", "dial 1", "--file", script});
    ASSERT_TRUE(observer.records.waitFor(3));

    simulator->WriteLine("dial 4");

    ASSERT_TRUE(observer.records.waitFor(4));
    std::vector<std::wstring> numbers;
    for (const ColloqCallArgs& record : observer.records.items()) {
        numbers.push_back(ReadWideField(record.phoneNumber));
    }
    EXPECT_EQ(numbers, (std::vector<std::wstring>{L"1", L"2", L"3", L"4"}));
}

TEST_F(HubSimProcessTest, CommandsTypedAtATerminalRunUntilEndOfInput) {
    auto simulator = StartSimulator({"--json"}, ChildInput{ChildInput::Kind::Terminal, {}});

    const ColloqCallArgs dial = Command(*simulator, "dial \"+1 555 \xf0\x9d\x84\x9e\"");
    const ColloqCallArgs none = Command(*simulator, "no-active");
    ASSERT_TRUE(simulator->Write("\x04")) << "Ctrl-D";

    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
    EXPECT_FALSE(Exists(HubPort()));
    EXPECT_EQ(ReadWideField(dial.phoneNumber), L"+1 555 \U0001D11E");
    EXPECT_EQ(none.deviceAction, static_cast<uint32_t>(DEVICE_ACTION_NONE));
}

TEST_F(HubSimProcessTest, CommandsFromAFileOnStandardInputRunAndTheSimulatorEnds) {
    const bqltest::TempDirectory scripts;
    const std::string script = scripts / "typed.txt";
    std::ofstream(script) << "dial 7\nactive \"hid/vid_2f0c&pid_0a1b/SN3\"\ndial 8";

    auto simulator = StartSimulator({"--json"}, ChildInput{ChildInput::Kind::File, script});

    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
    EXPECT_FALSE(Exists(HubPort()));
    ASSERT_TRUE(observer.records.waitFor(3));
    const auto records = observer.records.items();
    EXPECT_EQ(ReadWideField(records[0].phoneNumber), L"7");
    EXPECT_EQ(ReadWideField(records[1].devicePath), L"hid/vid_2f0c&pid_0a1b/SN3");
    EXPECT_EQ(ReadWideField(records[2].phoneNumber), L"8") << "the last line has no line end";
}

TEST_F(HubSimProcessTest, WithoutStandardInputTheSimulatorServesUntilASignal) {
    auto simulator = StartSimulator({"--json", "--no-stdin", "--device", "hid/vid_2f0c&pid_0001/A"});
    simulator->CloseInput();

    endpoint.SendGetActiveDevice();

    ASSERT_TRUE(observer.records.waitFor(1)) << "the simulator stopped serving";
    EXPECT_EQ(ReadWideField(observer.records.items()[0].devicePath), L"hid/vid_2f0c&pid_0001/A");
    simulator->Signal(SIGTERM);
    EXPECT_TRUE(ExitedWith(simulator->Wait(), 0));
}

TEST_F(HubSimProcessTest, MistakenCommandIsReportedAndTheNextOneRuns) {
    auto simulator = StartSimulator();

    simulator->WriteLine("ring call=1");
    const auto error = simulator->ReadLineContaining("error");
    const ColloqCallArgs dial = Command(*simulator, "dial 5");

    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(ParseJsonLine(*error).get<std::string>("text", ""), "unknown command 'ring' (try help)");
    EXPECT_EQ(ReadWideField(dial.phoneNumber), L"5");
}

TEST_F(HubSimProcessTest, ReadableOutputShowsEachRecordOnOneLine) {
    auto simulator = StartSimulator({});

    endpoint.Send(MESSAGE_TYPE_CALL, COLLOQ_HOLD_CALL, 3, L"", L"", "", "");

    const auto line = simulator->ReadLineContaining("received");
    ASSERT_TRUE(line.has_value());
    EXPECT_EQ(*line,
              "received call(0) state=hold(9) action=0 callId=3 device=\"\" contact=\"\" number=\"\" extra=\"\" "
              "keys=\"\" productId=0x0000");
}

TEST_F(HubSimProcessTest, BlockThatIsNoRecordIsShownByItsLength) {
    auto simulator = StartSimulator();
    NamedPipe sender("com.bqlhub.sender", MAC_PIPE_HUB_SIDE_, nullptr);
    unsigned char block[10] = {};

    sender.Send(block, sizeof block);

    const auto json = NextRecord(*simulator, "received");
    EXPECT_EQ(json.get<int>("blockLength", -1), 10);
}

TEST_F(HubSimProcessTest, SecondSimulatorCannotOwnTheHubPort) {
    auto first = StartSimulator();
    ChildProcess second(HUB_SIM_PATH, {"--json"});

    const auto error = second.ReadLineContaining("error");

    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(ParseJsonLine(*error).get<std::string>("text", ""), "cannot own " + HubPort() + ": another hub is running");
    EXPECT_TRUE(ExitedWith(second.Wait(), 1));
    EXPECT_TRUE(Exists(HubPort())) << "the second simulator removed the first one's port";
}

TEST_F(HubSimProcessTest, SimulatorRefusesAPortDirectoryOpenToOthers) {
    ASSERT_EQ(::chmod(ports.path().c_str(), 0755), 0);
    ChildProcess simulator(HUB_SIM_PATH, {"--json"});

    const auto error = simulator.ReadLineContaining("error");

    EXPECT_TRUE(error.has_value());
    EXPECT_TRUE(ExitedWith(simulator.Wait(), 1));
    EXPECT_FALSE(Exists(HubPort()));
}

TEST_F(HubSimProcessTest, LiveOwnerOfTheColloqPortInAnotherProcessLeavesThePipeSendingOnly) {
    endpoint.ClosePipe();
    ChildProcess holder(PORT_HOLDER_PATH, {MAC_PIPE_COLLOQ_SIDE_});
    ASSERT_EQ(holder.ReadLine(), std::optional<std::string>("listening"));
    auto simulator = StartSimulator();
    BlockInbox atClient;
    CClientPipe client(L"name", [&](unsigned char* data, int length) {
        atClient.put(Block(data, data + length));
        return 0;
    }, nullptr, 5);

    client.StartPipe();
    EXPECT_FALSE(client.IsListening());
    unsigned char block[3] = {1, 2, 3};
    client.Send(block, sizeof block);
    const auto shown = NextRecord(*simulator, "received");
    client.StopPipe();
    client.StartPipe();
    client.StopPipe();

    EXPECT_EQ(shown.get<int>("blockLength", -1), 3);
    EXPECT_TRUE(Exists(ports / "com.bqlhub.colloq")) << "the owner's port file was removed";
    holder.CloseInput();
    EXPECT_TRUE(ExitedWith(holder.Wait(), 0));
    EXPECT_FALSE(Exists(ports / "com.bqlhub.colloq"));
    EXPECT_TRUE(atClient.items().empty());
}

TEST_F(HubSimProcessTest, AbandonedHubPortFileIsReclaimedBySimulator) {
    {
        auto crashed = StartSimulator();
        crashed->Signal(SIGKILL);
        crashed->Wait();
    }
    ASSERT_TRUE(Exists(HubPort())) << "a killed hub leaves its port file";

    auto simulator = StartSimulator();
    endpoint.SendGetActiveDevice();

    const auto json = NextRecord(*simulator, "received");
    EXPECT_EQ(json.get<int>("deviceAction", -1), 2);
}

}  // namespace
