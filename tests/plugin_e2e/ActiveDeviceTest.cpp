#include <algorithm>

#include "PluginEndToEnd.h"

namespace e2e {
namespace {

// Another vendor's speakerphone as the client names it.
const std::string kSpeakerphoneId = "AppleUSBAudioEngine:Acme:Desk Speaker 9";

class ActiveDevice : public WithTwoHeadsets {
protected:
    int32_t refreshCount() {
        int32_t count = -1;
        EXPECT_EQ(vexilctl_refresh_count(&count), VEXILCTL_OK);
        return count;
    }

    // A call answered in the client; returns the headset commands it caused, in order.
    std::vector<int32_t> commandsOfAnsweredCall(int32_t callId) {
        const std::size_t mark = runtimeMark();
        fireCall(CallbackSlot::OnIncoming, callId, clientstate::kRinging, "5550090", "Uma");
        fireCall(CallbackSlot::OnConnected, callId, clientstate::kConnected, "5550090", "Uma");
        drainWorker();
        std::vector<int32_t> kinds;
        for (const VexilCtlCommand& command : runtimeCommandsSince(mark)) {
            EXPECT_EQ(command.callId, callId);
            kinds.push_back(command.command);
        }
        return kinds;
    }
};

TEST_F(ActiveDevice, ClientChoosingAnotherHeadsetMakesItTheRuntimesActiveDevice) {
    startWithHeadset(first);
    EXPECT_EQ(runtimeActiveDevice(), first.path);

    chooseClientDevice(clientDeviceId(second));
    EXPECT_EQ(runtimeActiveDevice(), second.path);
    expectLocalLog("DEBUG", "setActiveDevice",
                   "BQLColloqVexil::setActiveDevice set active device with PID 0c2d returns 0");

    // Calls the headset places now go out on the newly chosen device.
    const uint64_t mark = clientMark();
    dial(second, "5550091");
    const RecordedCall call = expectClientCall(HostCall::MakeCall, second.path, mark);
    EXPECT_EQ(call.number, "5550091");
}

TEST_F(ActiveDevice, ClientChoosingTheSameHeadsetTwiceSetsItOnlyOnce) {
    startWithHeadset(first);
    const std::string chosen = "BQLColloqVexil::setActiveDevice set active device with PID 0c2d returns 0";

    chooseClientDevice(clientDeviceId(second));
    chooseClientDevice(clientDeviceId(second));

    const auto lines = localLogMessages("DEBUG", "setActiveDevice");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), chosen), 1);
    EXPECT_EQ(runtimeActiveDevice(), second.path);
}

TEST_F(ActiveDevice, ClientOnAnotherVendorsDeviceFromTheStartLeavesTheHeadsetAloneAndEndsConnectedCallsOnIt) {
    initializePlugin();
    const int32_t refreshes = refreshCount();
    chooseClientDevice(kSpeakerphoneId);
    EXPECT_EQ(refreshCount(), refreshes);
    EXPECT_EQ(runtimeActiveDevice(), first.path);
    expectLocalLog("DEBUG", "GetPathFromColloqId",
                   "BQLColloqVexil::GetPidFromColloqPath device with name Desk Speaker 9 was not found");

    // The headset is told the call is not on it before it is shown as answered.
    EXPECT_EQ(commandsOfAnsweredCall(91), (std::vector<int32_t>{VEXILCTL_CMD_INCOMING_CALL, VEXILCTL_CMD_TERMINATE_CALL,
                                                                VEXILCTL_CMD_ANSWERED_CALL}));
}

TEST_F(ActiveDevice, ClientMovingToAnotherVendorsListedDeviceLeavesTheHeadsetAloneAndEndsConnectedCallsOnIt) {
    ASSERT_EQ(vexilctl_add_headset("hid/vid_046d&pid_0a44/SPK9", "Desk Speaker 9", 0x0a44, 0), VEXILCTL_OK);
    startWithHeadset(first);
    EXPECT_EQ(commandsOfAnsweredCall(92),
              (std::vector<int32_t>{VEXILCTL_CMD_INCOMING_CALL, VEXILCTL_CMD_ANSWERED_CALL}));

    const int32_t refreshes = refreshCount();
    chooseClientDevice(kSpeakerphoneId);
    EXPECT_EQ(refreshCount(), refreshes);
    EXPECT_EQ(runtimeActiveDevice(), first.path);
    EXPECT_EQ(commandsOfAnsweredCall(93), (std::vector<int32_t>{VEXILCTL_CMD_INCOMING_CALL, VEXILCTL_CMD_TERMINATE_CALL,
                                                                VEXILCTL_CMD_ANSWERED_CALL}));
}

TEST_F(ActiveDevice, HeadsetAskingForTheClientsDeviceSwitchesTheClientAndBringsItForward) {
    startWithHeadset(first);
    connectIncomingCall(94, "5550094", "Val");

    const std::size_t commands = runtimeMark();
    const uint64_t mark = clientMark();
    reportCallState(second, CALL_STATE_DEVICE_CHANGE);
    const RecordedCall released = expectClientCall(HostCall::ReleaseActiveDevice, first.path, mark);
    const RecordedCall changed = expectClientCall(HostCall::ActiveDeviceChanged, clientDeviceId(second), mark);
    const RecordedCall forward = expectClientCall(HostCall::MakeCall, first.path, mark);
    EXPECT_EQ(forward.number, "");
    EXPECT_LT(released.sequence, changed.sequence);
    EXPECT_LT(changed.sequence, forward.sequence);
    expectPluginLinesInOrder(
        ACCESSORY_LOG_TRACE,
        {"into pluginThread() case: VEXIL_CALL_EVENT, Start processing which is not related to a call",
         "activeDeviceChanged returns '%d' for device '%s' ", "setColloqForeground() is started",
         "setColloqForeground() is finished"},
        mark);
    expectLocalLog(
        "DEBUG", "OnCallStateChanged",
        "BQLColloqVexil::SessionManagerEvents::OnCallStateChanged 32event is fired for device " + second.path);

    // The call in progress is shown again, with the mute state.
    drainWorker();
    const auto replay = runtimeCommandsSince(commands);
    ASSERT_EQ(replay.size(), 2u);
    EXPECT_EQ(replay[0].command, VEXILCTL_CMD_INSERT_CALL);
    EXPECT_EQ(replay[0].callId, 94);
    EXPECT_EQ(replay[1].command, VEXILCTL_CMD_SET_MUTE);
    EXPECT_EQ(replay[1].mute, 0);
}

TEST_F(ActiveDevice, HeadsetAskingToBeTheClientsDeviceSwitchesTheClientAndBringsItForward) {
    startWithHeadset(first);

    const uint64_t mark = clientMark();
    reportCallState(second, 28);
    const RecordedCall released = expectClientCall(HostCall::ReleaseActiveDevice, first.path, mark);
    const RecordedCall changed = expectClientCall(HostCall::ActiveDeviceChanged, second.path, mark);
    const RecordedCall forward = expectClientCall(HostCall::MakeCall, first.path, mark);
    EXPECT_EQ(forward.number, "");
    EXPECT_LT(released.sequence, changed.sequence);
    EXPECT_LT(changed.sequence, forward.sequence);
}

TEST_F(ActiveDevice, HeadsetThatIsAlreadyTheClientsDeviceOnlyBringsTheClientForward) {
    startWithHeadset(first);

    const uint64_t mark = clientMark();
    reportCallState(first, 28);
    const RecordedCall forward = expectClientCall(HostCall::MakeCall, first.path, mark);
    EXPECT_EQ(forward.number, "");
    EXPECT_TRUE(clientCallsOf(HostCall::ReleaseActiveDevice, mark).empty());
    EXPECT_TRUE(clientCallsOf(HostCall::ActiveDeviceChanged, mark).empty());
}

}  // namespace
}  // namespace e2e
