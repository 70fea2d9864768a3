#include <algorithm>

#include "PluginEndToEnd.h"

namespace e2e {
namespace {

using hostharness::CallDescription;
using hostharness::HarnessStatus;

class HeadsetArrival : public PluginEndToEnd {
protected:
    static std::vector<int32_t> callIdsOf(const std::vector<VexilCtlCommand>& commands, int32_t kind) {
        std::vector<int32_t> ids;
        for (const VexilCtlCommand& command : commands) {
            if (command.command == kind) {
                ids.push_back(command.callId);
            }
        }
        return ids;
    }
};

TEST_F(HeadsetArrival, ClientsCallsAreLoadedAndShownWhenTheHeadsetActivatesThePlugIn) {
    ASSERT_EQ(client().responses().setCalls({CallDescription{51, clientstate::kConnected, 0, "5550151", "Ned"},
                                             CallDescription{52, clientstate::kHeld, 0, "5550152", "Ola"},
                                             CallDescription{53, clientstate::kRinging, 0, "5550153", "Pat"}}),
              HarnessStatus::Ok);
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    const uint64_t mark = clientMark();
    startWithHeadset(headset);

    const auto asked = clientCallsOf(HostCall::GetCalls, mark);
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].max, 10);
    drainWorker();

    // Whether a connected call is first ended on the headset depends on whether the worker
    // renders it before the client's device has been taken over; the calls shown do not.
    const auto commands = runtimeCommands();
    EXPECT_EQ(callIdsOf(commands, VEXILCTL_CMD_INSERT_CALL), (std::vector<int32_t>{51, 52}));
    EXPECT_EQ(callIdsOf(commands, VEXILCTL_CMD_HOLD_CALL), (std::vector<int32_t>{52}));
    EXPECT_EQ(callIdsOf(commands, VEXILCTL_CMD_INCOMING_CALL), (std::vector<int32_t>{53}));
    for (const VexilCtlCommand& command : commands) {
        if (command.callId == 52 && command.hasContact) {
            EXPECT_STREQ(command.contactName, "Ola");
            EXPECT_STREQ(command.contactPhone, "5550152");
        }
    }
    EXPECT_EQ(headsetCallState(51), VEXILCTL_CALL_ACTIVE);
    EXPECT_EQ(headsetCallState(52), VEXILCTL_CALL_HELD);
    EXPECT_EQ(headsetCallState(53), VEXILCTL_CALL_RINGING);
    expectPluginLinesInOrder(ACCESSORY_LOG_TRACE,
                             {"into pluginThread() render connected call", "into pluginThread() render connected call",
                              "Held Call Info: CallID = %d, CallState = %d"},
                             mark);
}

TEST_F(HeadsetArrival, SecondHeadsetIsToldOfTheCallsInProgressAndTheMuteState) {
    const Headset first = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(first);
    connectIncomingCall(61, "5550161", "Quin");
    fireCall(CallbackSlot::OnHold, 61, clientstate::kHeld);
    connectIncomingCall(62, "5550162", "Rae");
    fireAudio(CallbackSlot::OnAudioMute);
    drainWorker();

    const std::size_t mark = runtimeMark();
    plugHeadset(0x0c2d, "SN2", "Model 7.2");
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);

    const auto replay = runtimeCommandsSince(mark);
    ASSERT_EQ(replay.size(), 4u);
    EXPECT_EQ(replay[0].command, VEXILCTL_CMD_INSERT_CALL);
    EXPECT_EQ(replay[0].callId, 61);
    EXPECT_STREQ(replay[0].contactName, "Quin");
    EXPECT_EQ(replay[1].command, VEXILCTL_CMD_HOLD_CALL);
    EXPECT_EQ(replay[1].callId, 61);
    EXPECT_EQ(replay[2].command, VEXILCTL_CMD_INSERT_CALL);
    EXPECT_EQ(replay[2].callId, 62);
    EXPECT_STREQ(replay[2].contactPhone, "5550162");
    EXPECT_EQ(replay[3].command, VEXILCTL_CMD_SET_MUTE);
    EXPECT_EQ(replay[3].mute, 1);
}

TEST_F(HeadsetArrival, LastHeadsetRemovedDropsTheCallsAndIgnoresTheClientsReports) {
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    startWithHeadset(headset);
    connectIncomingCall(71, "5550171", "Sam");

    ASSERT_EQ(vexilctl_remove_headset(headset.path.c_str()), VEXILCTL_OK);
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);
    chooseClientDevice(clientDeviceId(headset));

    const std::size_t commands = runtimeMark();
    const uint64_t mark = clientMark();
    fireCall(CallbackSlot::OnIncoming, 72, clientstate::kRinging, "5550172", "Tia");
    fireCall(CallbackSlot::OnHold, 71, clientstate::kHeld);
    fireCall(CallbackSlot::OnOnHook, 71, clientstate::kConnected);
    fireAudio(CallbackSlot::OnAudioMute);
    drainWorker();
    EXPECT_TRUE(runtimeCommandsSince(commands).empty());
    EXPECT_FALSE(hasPluginLine("into pluginThread() case: INCOMING_CALL_EVENT", mark));
    EXPECT_FALSE(hasPluginLine("into pluginThread() case: ON_HOLD_CALL_EVENT", mark));
    EXPECT_FALSE(hasPluginLine("into pluginThread() case: TERMINATED_CALL_EVENT", mark));
    EXPECT_FALSE(hasPluginLine("into pluginThread() case: MUTEON_CALL_EVENT", mark));

    // Nothing is left to show on a new headset, nor to end at unload.
    plugHeadset(0x0c2d, "SN2", "Model 7.2");
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);
    uninitializePlugin();
    EXPECT_TRUE(runtimeCommandsSince(commands).empty());
}

TEST_F(HeadsetArrival, LoadedCallsInStatesWithoutAnEventAreKeptAndShownOnlyToALaterHeadset) {
    // State 2 has no event of its own; a state above 10 takes the event of the call before it.
    ASSERT_EQ(client().responses().setCalls({CallDescription{54, 2, 0, "5550154", "Uma"},
                                             CallDescription{56, clientstate::kRinging, 0, "5550156", "Vic"},
                                             CallDescription{57, 12, 0, "5550157", "Wyn"}}),
              HarnessStatus::Ok);
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");
    const uint64_t mark = clientMark();
    startWithHeadset(headset);
    drainWorker();

    // 56 rings; 57, whose state the plug-in reads as idle, is handled as incoming but not shown.
    EXPECT_EQ(callIdsOf(runtimeCommands(), VEXILCTL_CMD_INCOMING_CALL), (std::vector<int32_t>{56}));
    const std::string incomingCase = pluginLine("into pluginThread() case: INCOMING_CALL_EVENT");
    const auto lines = clientCallsOf(HostCall::Log, mark);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [&incomingCase](const RecordedCall& line) { return line.text == incomingCase; }),
              2);
    for (const VexilCtlCommand& command : runtimeCommands()) {
        EXPECT_NE(command.callId, 54);
        EXPECT_NE(command.callId, 57);
    }

    // All three are in the plug-in's call list: a second headset is told of each.
    const std::size_t replayMark = runtimeMark();
    plugHeadset(0x0c2d, "SN2", "Model 7.2");
    ASSERT_EQ(vexilctl_wait_idle(10000), VEXILCTL_OK);
    EXPECT_EQ(callIdsOf(runtimeCommandsSince(replayMark), VEXILCTL_CMD_INSERT_CALL),
              (std::vector<int32_t>{54, 56, 57}));
}

}  // namespace
}  // namespace e2e
