#include <chrono>
#include <cstring>
#include <future>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BlockInbox.h"
#include "NamedPipe.h"
#include "ReceiverThreads.h"
#include "StuckPort.h"
#include "bqltest/FileLines.h"
#include "bqltest/LocalLog.h"
#include "bqltest/ScopedEnvironment.h"
#include "bqltest/TempDirectory.h"
#include "hubproxy/CColloqProxy.h"
#include "hubproxy/ColloqRecordText.h"
#include "hubproxy/ColloqRecords.h"
#include "hubproxy/PipeNames.h"

namespace {

// Stands in for the hub handler: keeps every record it is notified of.
struct TestObserver {
    void notifyPluginAboutEvent(const ColloqCallArgs& record) { records.put(record); }
    bqltest::Inbox<ColloqCallArgs> records;
};

using Endpoint = CColloqProxy<TestObserver>;

constexpr const char* kSendTrace =
    "void CColloqProxy::Send(MessageType, ColloqCallState, int, const wchar_t *, const wchar_t *, const char *, const "
    "char *)";
constexpr const char* kSendMuteTrace =
    "void CColloqProxy::SendMute(MessageType, ColloqCallState, int, const wchar_t *, const wchar_t *, const char *, "
    "const char *)";

ColloqCallArgs AsRecord(const Block& block) {
    ColloqCallArgs record{};
    if (block.size() == sizeof record) {
        std::memcpy(&record, block.data(), sizeof record);
    }
    return record;
}

class ColloqProxyTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(log.ready()); }

    // The hub's end of the pipe, collecting what the endpoint sends.
    std::unique_ptr<NamedPipe> StartHub() {
        auto hub = std::make_unique<NamedPipe>(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, [this](unsigned char* data, int length) {
            atHub.put(Block(data, data + length));
            return 0;
        });
        hub->StartPipe();
        return hub;
    }

    // Lines of one trace name: "entry" first, then "exit " with nothing behind it.
    void ExpectTraced(const std::string& name) {
        std::vector<std::string> traced;
        for (const std::string& line : log.lines()) {
            if (line.find(name + " <> ") != std::string::npos) {
                traced.push_back(line);
            }
        }
        ASSERT_EQ(traced.size(), 2u) << name;
        EXPECT_TRUE(bqltest::endsWith(traced[0], " <> entry")) << traced[0];
        EXPECT_TRUE(bqltest::endsWith(traced[1], " <> exit ")) << traced[1];
    }

    bqltest::TempDirectory ports;
    bqltest::ScopedEnvironment portDirectory{"BQL_PORT_DIR", ports.path()};
    bqltest::LocalLogCapture log;
    BlockInbox atHub;
};

TEST_F(ColloqProxyTest, ConstructedEndpointAlreadyListens) {
    TestObserver observer;
    Endpoint endpoint;
    endpoint.registerCallback(&observer);
    auto hub = StartHub();
    ColloqCallArgs record = BuildHeadsetEvent(COLLOQ_ACCEPT_CALL, 17, L"hid/vid_2f0c&pid_0a1b/SN1", "", "");

    hub->Send(reinterpret_cast<unsigned char*>(&record), sizeof record);

    ASSERT_TRUE(observer.records.waitFor(1));
    const ColloqCallArgs received = observer.records.items()[0];
    EXPECT_EQ(received.callState, COLLOQ_ACCEPT_CALL);
    EXPECT_EQ(received.callId, 17);
    EXPECT_EQ(ReadWideField(received.devicePath), L"hid/vid_2f0c&pid_0a1b/SN1");
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, BlocksOfTheWrongSizeAreRejectedAndReachNoObserver) {
    TestObserver observer;
    Endpoint endpoint;
    endpoint.registerCallback(&observer);
    std::vector<unsigned char> block(2197);

    EXPECT_EQ(endpoint.DecodeAndFire(block.data(), 2195), 1);
    EXPECT_EQ(endpoint.DecodeAndFire(block.data(), 2197), 1);
    EXPECT_EQ(endpoint.DecodeAndFire(block.data(), 0), 1);
    EXPECT_EQ(endpoint.DecodeAndFire(nullptr, 2196), 1);

    EXPECT_TRUE(observer.records.items().empty());
}

TEST_F(ColloqProxyTest, BlockOf2196ZeroBytesReachesEverySubscriber) {
    TestObserver first;
    TestObserver second;
    Endpoint endpoint;
    endpoint.registerCallback(&first);
    endpoint.registerCallback(&second);
    std::vector<unsigned char> zeros(2196);

    EXPECT_EQ(endpoint.DecodeAndFire(zeros.data(), 2196), 0);

    ASSERT_EQ(first.records.items().size(), 1u);
    ASSERT_EQ(second.records.items().size(), 1u);
    const ColloqCallArgs record = first.records.items()[0];
    EXPECT_EQ(std::memcmp(&record, zeros.data(), sizeof record), 0);
}

TEST_F(ColloqProxyTest, RegisteringTwiceDeliversOnceAndUnregisteringStopsDelivery) {
    TestObserver observer;
    Endpoint endpoint;
    std::vector<unsigned char> zeros(2196);
    endpoint.registerCallback(&observer);
    endpoint.registerCallback(&observer);

    endpoint.DecodeAndFire(zeros.data(), 2196);
    endpoint.unregisterCallback(&observer);
    endpoint.DecodeAndFire(zeros.data(), 2196);

    EXPECT_EQ(observer.records.items().size(), 1u);
}

TEST_F(ColloqProxyTest, OpenPipeTwiceStartsThePipeOnceAndLogsOnce) {
    Endpoint endpoint;

    endpoint.OpenPipe();

    EXPECT_EQ(SettledReceiverThreadCount(1), 1);
    EXPECT_EQ(log.count("void CColloqProxy::OpenPipe() <> pipe started (Colloq side)."), 1);
}

TEST_F(ColloqProxyTest, ClosePipeOnAClosedEndpointLogsNothing) {
    Endpoint endpoint;

    endpoint.ClosePipe();
    endpoint.ClosePipe();

    EXPECT_EQ(SettledReceiverThreadCount(0), 0);
    EXPECT_EQ(log.count("void CColloqProxy::ClosePipe() <> pipe stoped (Colloq side)."), 1);
}

TEST_F(ColloqProxyTest, OpenPipeAfterClosePipeListensAgain) {
    TestObserver observer;
    Endpoint endpoint;
    endpoint.registerCallback(&observer);
    endpoint.ClosePipe();
    auto hub = StartHub();

    endpoint.OpenPipe();
    ColloqCallArgs record = BuildDialRequest(L"+1 555 0100");
    hub->Send(reinterpret_cast<unsigned char*>(&record), sizeof record);

    ASSERT_TRUE(observer.records.waitFor(1));
    EXPECT_EQ(ReadWideField(observer.records.items()[0].phoneNumber), L"+1 555 0100");
    EXPECT_EQ(log.count("pipe started (Colloq side)."), 2);
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, DestroyingTheEndpointClosesThePipe) {
    {
        Endpoint endpoint;
    }

    EXPECT_EQ(SettledReceiverThreadCount(0), 0);
    EXPECT_EQ(log.count("pipe stoped (Colloq side)."), 1);
}

TEST_F(ColloqProxyTest, MakePipeArgsBuildsACallRecord) {
    Endpoint endpoint;

    const ColloqCallArgs record =
        endpoint.MakePipeArgs(MESSAGE_TYPE_CALL, COLLOQ_OUTGOING_CALL, 31, L"Grace", L"+1 202", "x", "y");

    EXPECT_EQ(record.messageType, MESSAGE_TYPE_CALL);
    EXPECT_EQ(record.callState, COLLOQ_OUTGOING_CALL);
    EXPECT_EQ(record.deviceAction, 0u);
    EXPECT_EQ(record.callId, 31);
    EXPECT_EQ(ReadWideField(record.contactName), L"Grace");
    EXPECT_EQ(ReadWideField(record.phoneNumber), L"+1 202");
    EXPECT_EQ(ReadNarrowField(record.extraText), "x");
    EXPECT_EQ(ReadNarrowField(record.dtmfKeys), "y");
}

TEST_F(ColloqProxyTest, SendWritesOneRecordToTheHubAndTracesItsScope) {
    Endpoint endpoint;
    auto hub = StartHub();

    endpoint.Send(MESSAGE_TYPE_CALL, COLLOQ_INCOMING_CALL, 42, L"Zo\u00eb \U0001F600", L"+49 30 1234", "", "");

    ASSERT_TRUE(atHub.waitFor(1));
    const Block block = atHub.items()[0];
    ASSERT_EQ(block.size(), 2196u);
    const ColloqCallArgs record = AsRecord(block);
    EXPECT_EQ(record.callState, COLLOQ_INCOMING_CALL);
    EXPECT_EQ(record.callId, 42);
    EXPECT_EQ(ReadWideField(record.contactName), L"Zo\u00eb \U0001F600");
    EXPECT_EQ(ReadWideField(record.phoneNumber), L"+49 30 1234");
    ExpectTraced(kSendTrace);
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, SendMuteTracesItsOwnName) {
    Endpoint endpoint;
    auto hub = StartHub();

    endpoint.SendMute(MESSAGE_TYPE_CALL, COLLOQ_MUTE_ON, 0, L"", L"", "", "");

    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(AsRecord(atHub.items()[0]).callState, COLLOQ_MUTE_ON);
    ExpectTraced(kSendMuteTrace);
    EXPECT_EQ(log.count(kSendTrace), 0);
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, OverLongContactNameReachesTheHubCutWithATerminator) {
    Endpoint endpoint;
    auto hub = StartHub();
    const std::wstring name(400, L'a');

    endpoint.Send(MESSAGE_TYPE_CALL, COLLOQ_INCOMING_CALL, 1, name.c_str(), L"5", "", "");

    ASSERT_TRUE(atHub.waitFor(1));
    const ColloqCallArgs record = AsRecord(atHub.items()[0]);
    EXPECT_EQ(ReadWideField(record.contactName), std::wstring(255, L'a'));
    EXPECT_EQ(ReadWideField(record.phoneNumber), L"5");
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, SetActiveDeviceRequestForProduct0x123ReachesTheHubByteForByte) {
    Endpoint endpoint;
    auto hub = StartHub();

    endpoint.SendSetActiveDevice(0x123);

    ASSERT_TRUE(atHub.waitFor(1));
    const Block block = atHub.items()[0];
    ASSERT_EQ(block.size(), 2196u);
    EXPECT_EQ(Block(block.begin(), block.begin() + 16),
              (Block{0x02, 0, 0, 0, 0x14, 0, 0, 0, 0x03, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Block(block.begin() + 2192, block.end()), (Block{0x23, 0x01, 0, 0}));
    ExpectTraced("void CColloqProxy::SendSetActiveDevice(uint32_t)");
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, GetActiveDeviceRequestReachesTheHub) {
    Endpoint endpoint;
    auto hub = StartHub();

    endpoint.SendGetActiveDevice();

    ASSERT_TRUE(atHub.waitFor(1));
    const ColloqCallArgs record = AsRecord(atHub.items()[0]);
    EXPECT_EQ(record.messageType, MESSAGE_TYPE_ACTIVE_DEVICE);
    EXPECT_EQ(record.callState, COLLOQ_DEVICE_REQUEST);
    EXPECT_EQ(record.deviceAction, static_cast<uint32_t>(DEVICE_ACTION_GET));
    EXPECT_EQ(record.productId, 0u);
    ExpectTraced("void CColloqProxy::SendGetActiveDevice()");
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, PipeConnectedAsksForTheActiveDevice) {
    Endpoint endpoint;
    auto hub = StartHub();

    endpoint.PipeConnected();

    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(AsRecord(atHub.items()[0]).deviceAction, static_cast<uint32_t>(DEVICE_ACTION_GET));
    hub->StopPipe();
}

TEST_F(ColloqProxyTest, SendToAHubThatNeverReadsWaitsForItsFiveSecondTimeOutAndNoLonger) {
    const StuckPort hub(ports / "com.bqlhub.hub");
    ASSERT_TRUE(hub.isFull());
    Endpoint endpoint;
    const auto start = std::chrono::steady_clock::now();

    std::future<void> send = std::async(std::launch::async, [&] { endpoint.SendGetActiveDevice(); });

    ASSERT_EQ(send.wait_for(std::chrono::seconds(60)), std::future_status::ready) << "the send never gave up";
    // A send that gives up at once would drop records that a busy hub takes a moment later.
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
    ExpectTraced("void CColloqProxy::SendGetActiveDevice()");
}

TEST_F(ColloqProxyTest, SendsWithoutAHubAreLostQuietly) {
    Endpoint endpoint;

    endpoint.Send(MESSAGE_TYPE_CALL, COLLOQ_TERMINATE_CALL, 3, L"", L"", "", "");
    endpoint.SendGetActiveDevice();

    ExpectTraced(kSendTrace);
    EXPECT_EQ(log.count("ERROR"), 0);
}

}  // namespace
