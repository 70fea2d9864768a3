#include "handlers/BQLHandlerSelector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "calls/BQLColloqCall.h"
#include "colloq/AccessoryAPI.h"

namespace {

using ::testing::_;
using ::testing::InSequence;
using ::testing::Invoke;
using ::testing::Return;
using ::testing::StrictMock;

class MockHandler : public IBQLColloqHandler {
public:
    MOCK_METHOD(int, getVexilActiveDevicePath, (std::string*), (override));
    MOCK_METHOD(bool, performIncomingCall, (ICall*, IContact*), (override));
    MOCK_METHOD(bool, performOutgoingCall, (ICall*, IContact*), (override));
    MOCK_METHOD(bool, performTerminateCall, (ICall*), (override));
    MOCK_METHOD(bool, performAnsweredCall, (ICall*), (override));
    MOCK_METHOD(bool, performHoldCall, (ICall*), (override));
    MOCK_METHOD(bool, performResumeCall, (ICall*), (override));
    MOCK_METHOD(bool, performMuteCall, (bool), (override));
    MOCK_METHOD(bool, performInsertCall, (ICall*, IContact*), (override));
    MOCK_METHOD(void, setActiveDevice, (const char*), (override));
    MOCK_METHOD(int, connectToVexil, (BQLEventQueue*), (override));
    MOCK_METHOD(int, disconnectFromVexil, (), (override));
    MOCK_METHOD(void, ProcessVexilEvent, (std::shared_ptr<BQLColloqEvent>), (override));
    virtual ~MockHandler() = default;
};

// The selector reaches its two handlers through plain function pointers.
MockHandler* proxyHandler = nullptr;
MockHandler* directHandler = nullptr;
IBQLColloqHandler* proxySource() { return proxyHandler; }
IBQLColloqHandler* directSource() { return directHandler; }

class HandlerSelectorTest : public ::testing::Test {
protected:
    HandlerSelectorTest() {
        proxyHandler = &proxy;
        directHandler = &direct;
    }
    ~HandlerSelectorTest() override {
        proxyHandler = nullptr;
        directHandler = nullptr;
    }

    StrictMock<MockHandler> proxy;
    StrictMock<MockHandler> direct;
    BQLHandlerSelector selector{&proxySource, &directSource};
    BQLEventQueue queue;
};

// A call and its contact to pass through the selector; only their addresses matter here.
struct SampleCall {
    SampleCall() : record(makeRecord()), contact(&record), call(&record, BQL_CALL_INCOMING, contact) {}

    static Accessory_CallInfo_v1_0_t makeRecord() {
        Accessory_CallInfo_v1_0_t info{};
        info.callId = 17;
        return info;
    }

    Accessory_CallInfo_v1_0_t record;
    BQLColloqContact contact;
    BQLColloqCall call;
};

TEST_F(HandlerSelectorTest, ConnectWithNoHandlerSetReturnsZeroAndConnectsNeither) {
    EXPECT_EQ(selector.connectToVexil(&queue), 0);
}

TEST_F(HandlerSelectorTest, DisconnectWithNoHandlerSetReturnsZeroAndDisconnectsNeither) {
    EXPECT_EQ(selector.disconnectFromVexil(), 0);
}

TEST_F(HandlerSelectorTest, ConnectConnectsProxyThenDirectAndReturnsZeroEvenWhenBothFail) {
    selector.setHandler(&direct);
    InSequence order;
    EXPECT_CALL(proxy, connectToVexil(&queue)).WillOnce(Return(-1));
    EXPECT_CALL(direct, connectToVexil(&queue)).WillOnce(Return(-1));
    EXPECT_EQ(selector.connectToVexil(&queue), 0);
}

TEST_F(HandlerSelectorTest, ConnectWhileProxyIsCurrentStillConnectsBothProxyFirst) {
    selector.setHandler(&proxy);
    InSequence order;
    EXPECT_CALL(proxy, connectToVexil(&queue)).WillOnce(Return(0));
    EXPECT_CALL(direct, connectToVexil(&queue)).WillOnce(Return(0));
    EXPECT_EQ(selector.connectToVexil(&queue), 0);
}

TEST_F(HandlerSelectorTest, DisconnectDisconnectsProxyThenDirectAndReturnsZero) {
    selector.setHandler(&direct);
    InSequence order;
    EXPECT_CALL(proxy, disconnectFromVexil()).WillOnce(Return(0));
    EXPECT_CALL(direct, disconnectFromVexil()).WillOnce(Return(0));
    EXPECT_EQ(selector.disconnectFromVexil(), 0);
}

TEST_F(HandlerSelectorTest, AfterSwitchingToProxyMuteReachesOnlyTheProxyAndDirectStaysConnected) {
    selector.setHandler(&direct);
    EXPECT_CALL(proxy, connectToVexil(&queue)).WillOnce(Return(0));
    EXPECT_CALL(direct, connectToVexil(&queue)).WillOnce(Return(0));
    ASSERT_EQ(selector.connectToVexil(&queue), 0);

    selector.setHandler(&proxy);
    // Strict mocks: a mute or a disconnect reaching the direct handler fails the test.
    EXPECT_CALL(proxy, performMuteCall(true)).WillOnce(Return(true));
    EXPECT_TRUE(selector.performMuteCall(true));
}

TEST_F(HandlerSelectorTest, ForwardersPassArgumentsAndResultsOfTheCurrentHandlerUnchanged) {
    selector.setHandler(&direct);
    SampleCall sample;
    ICall* call = &sample.call;
    IContact* contact = &sample.contact;
    std::string path;

    EXPECT_CALL(direct, getVexilActiveDevicePath(&path)).WillOnce(Return(-1));
    EXPECT_CALL(direct, performIncomingCall(call, contact)).WillOnce(Return(true));
    EXPECT_CALL(direct, performOutgoingCall(call, contact)).WillOnce(Return(false));
    EXPECT_CALL(direct, performTerminateCall(call)).WillOnce(Return(true));
    EXPECT_CALL(direct, performAnsweredCall(call)).WillOnce(Return(false));
    EXPECT_CALL(direct, performHoldCall(call)).WillOnce(Return(true));
    EXPECT_CALL(direct, performResumeCall(call)).WillOnce(Return(false));
    EXPECT_CALL(direct, performMuteCall(false)).WillOnce(Return(true));
    EXPECT_CALL(direct, performInsertCall(call, contact)).WillOnce(Return(false));
    EXPECT_CALL(direct, setActiveDevice(::testing::StrEq("1a2b")));

    EXPECT_EQ(selector.getVexilActiveDevicePath(&path), -1);
    EXPECT_TRUE(selector.performIncomingCall(call, contact));
    EXPECT_FALSE(selector.performOutgoingCall(call, contact));
    EXPECT_TRUE(selector.performTerminateCall(call));
    EXPECT_FALSE(selector.performAnsweredCall(call));
    EXPECT_TRUE(selector.performHoldCall(call));
    EXPECT_FALSE(selector.performResumeCall(call));
    EXPECT_TRUE(selector.performMuteCall(false));
    EXPECT_FALSE(selector.performInsertCall(call, contact));
    selector.setActiveDevice("1a2b");
}

TEST_F(HandlerSelectorTest, ActiveDevicePathWrittenByTheHandlerReachesTheCaller) {
    selector.setHandler(&direct);
    EXPECT_CALL(direct, getVexilActiveDevicePath(_)).WillOnce(Invoke([](std::string* out) {
        *out = "hid/vid_2f0c&pid_1a2b/A1";
        return 0;
    }));
    std::string path;
    EXPECT_EQ(selector.getVexilActiveDevicePath(&path), 0);
    EXPECT_EQ(path, "hid/vid_2f0c&pid_1a2b/A1");
}

TEST_F(HandlerSelectorTest, ProcessVexilEventHandsTheEventOverAndLeavesItsReferenceCount) {
    selector.setHandler(&direct);
    auto event = std::make_shared<BQLColloqEvent>(5, CALL_STATE_ACCEPT_CALL, "hid/vid_2f0c&pid_1a2b/A1");
    BQLColloqEvent* seenByHandler = nullptr;
    long referencesDuringCall = 0;
    // Matched with _: an equality matcher would keep a reference of its own.
    EXPECT_CALL(direct, ProcessVexilEvent(_)).WillOnce(Invoke([&](std::shared_ptr<BQLColloqEvent> given) {
        seenByHandler = given.get();
        referencesDuringCall = given.use_count();
    }));
    selector.ProcessVexilEvent(event);
    EXPECT_EQ(seenByHandler, event.get());
    EXPECT_GT(referencesDuringCall, 1);
    EXPECT_EQ(event.use_count(), 1);
}

TEST_F(HandlerSelectorTest, ProcessVexilEventLeavesTheReferenceCountWhenTheHandlerThrows) {
    selector.setHandler(&direct);
    auto event = std::make_shared<BQLColloqEvent>(5, CALL_STATE_TERMINATE_CALL, "hid/vid_2f0c&pid_1a2b/A1");
    EXPECT_CALL(direct, ProcessVexilEvent(_)).WillOnce(Invoke([](std::shared_ptr<BQLColloqEvent>) {
        throw std::runtime_error("handler failed");
    }));
    EXPECT_THROW(selector.ProcessVexilEvent(event), std::runtime_error);
    EXPECT_EQ(event.use_count(), 1);
}

TEST_F(HandlerSelectorTest, SetHandlerAgainSwitchesBackToTheDirectHandler) {
    selector.setHandler(&proxy);
    selector.setHandler(&direct);
    EXPECT_CALL(direct, performHoldCall(nullptr)).WillOnce(Return(false));
    EXPECT_FALSE(selector.performHoldCall(nullptr));
}

}  // namespace
