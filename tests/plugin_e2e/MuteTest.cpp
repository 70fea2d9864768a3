#include "PluginEndToEnd.h"

namespace e2e {
namespace {

class Mute : public StartedWithOneHeadset {
protected:
    int32_t headsetMuted() {
        int32_t muted = -1;
        EXPECT_EQ(vexilctl_get_mute(&muted), VEXILCTL_OK);
        return muted;
    }
};

TEST_F(Mute, ClientMuteAndUnmuteReachTheHeadset) {
    const uint64_t mark = clientMark();
    fireAudio(CallbackSlot::OnAudioMute);
    const auto muted = expectRuntimeCommands(VEXILCTL_CMD_SET_MUTE, 1);
    ASSERT_EQ(muted.size(), 1u);
    EXPECT_EQ(muted[0].mute, 1);
    EXPECT_EQ(headsetMuted(), 1);
    expectPluginLine(ACCESSORY_LOG_TRACE, "into pluginThread() case: MUTEON_CALL_EVENT", mark);

    const uint64_t unmuteMark = clientMark();
    fireAudio(CallbackSlot::OnAudioUnmute);
    const auto both = expectRuntimeCommands(VEXILCTL_CMD_SET_MUTE, 2);
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[1].mute, 0);
    EXPECT_EQ(headsetMuted(), 0);
    expectPluginLine(ACCESSORY_LOG_TRACE, "into pluginThread() case: MUTEOFF_CALL_EVENT", unmuteMark);
    EXPECT_EQ(localLogMessages("INFO", "performMuteCall"),
              (std::vector<std::string>{"BQLColloqVexil: Mute Call: mute = true Successful",
                                        "BQLColloqVexil: Mute Call: mute = false Successful"}));
}

TEST_F(Mute, HeadsetMuteButtonsMuteAndUnmuteTheClient) {
    connectIncomingCall(35, "5550035", "Jo");

    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_MUTEON, 35);
    expectClientCall(HostCall::MuteCall, headset.path, mark);
    expectPluginLine(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_MUTEON", mark);

    const uint64_t unmuteMark = clientMark();
    press(headset, CALL_STATE_MUTEOFF, 35);
    expectClientCall(HostCall::UnmuteCall, headset.path, unmuteMark);
    expectPluginLine(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_MUTEOFF",
                     unmuteMark);
    // The headset's buttons go to the client only; the client's answer mutes the headset.
    drainWorker();
    EXPECT_TRUE(runtimeCommandsOf(VEXILCTL_CMD_SET_MUTE).empty());
}

}  // namespace
}  // namespace e2e
