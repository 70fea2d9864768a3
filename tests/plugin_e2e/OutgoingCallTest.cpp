#include "PluginEndToEnd.h"

#include <regex>

namespace e2e {
namespace {

class OutgoingCall : public StartedWithOneHeadset {
protected:
};

TEST_F(OutgoingCall, RemoteAlertingShowsTheOutgoingCallOnTheHeadset) {
    const uint64_t mark = clientMark();
    fireCall(CallbackSlot::OnRemoteAlerting, 31, clientstate::kAlerting, "5550001", "Cy Young");

    const auto outgoing = expectRuntimeCommands(VEXILCTL_CMD_OUTGOING_CALL, 1);
    ASSERT_EQ(outgoing.size(), 1u);
    EXPECT_EQ(outgoing[0].callId, 31);
    EXPECT_EQ(outgoing[0].hasContact, 1);
    EXPECT_STREQ(outgoing[0].contactName, "Cy Young");
    EXPECT_STREQ(outgoing[0].contactPhone, "5550001");
    EXPECT_EQ(outgoing[0].arg1, 0);
    EXPECT_EQ(headsetCallState(31), VEXILCTL_CALL_OUTGOING);
    // The handler names the call by its address.
    const auto commandLines = localLogMessages("INFO", "performOutgoingCall");
    ASSERT_EQ(commandLines.size(), 1u);
    EXPECT_TRUE(
        std::regex_match(commandLines[0], std::regex("BQLColloqVexil: Outgoing Call: callID = 0x[0-9a-f]+ Successful")))
        << commandLines[0];
    // The worker's lines reach the client with their conversions as written.
    expectPluginLinesInOrder(
        ACCESSORY_LOG_TRACE,
        {"into pluginThread() case: OUTGOING_CALL_EVENT", "Outgoing Call Info: CallID = %d, CallState = %d",
         "into pluginThread() Render outgoing call"},
        mark);
}

TEST_F(OutgoingCall, FarEndAnsweringConnectsTheCallWithoutACommand) {
    fireCall(CallbackSlot::OnRemoteAlerting, 32, clientstate::kAlerting, "5550002", "Di");
    expectRuntimeCommands(VEXILCTL_CMD_OUTGOING_CALL, 1);

    const std::size_t commands = runtimeMark();
    const uint64_t mark = clientMark();
    fireCall(CallbackSlot::OnConnected, 32, clientstate::kConnected, "5550002", "Di");
    drainWorker();
    EXPECT_TRUE(runtimeCommandsSince(commands).empty());
    expectPluginLine(ACCESSORY_LOG_TRACE, "Connected Call Info: CallID = %d, CallState = %d", mark);
    EXPECT_FALSE(hasPluginLine("into pluginThread() render answered call", mark));
    EXPECT_EQ(headsetCallState(32), VEXILCTL_CALL_OUTGOING);

    // The call is connected now: a repeated connected report shows it as a call in progress.
    const uint64_t again = clientMark();
    fireCall(CallbackSlot::OnConnected, 32, clientstate::kConnected, "5550002", "Di");
    const auto inserted = expectRuntimeCommands(VEXILCTL_CMD_INSERT_CALL, 1);
    ASSERT_EQ(inserted.size(), 1u);
    EXPECT_EQ(inserted[0].callId, 32);
    EXPECT_STREQ(inserted[0].contactPhone, "5550002");
    expectPluginLine(ACCESSORY_LOG_TRACE, "into pluginThread() render connected call", again);
    EXPECT_EQ(headsetCallState(32), VEXILCTL_CALL_ACTIVE);
}

}  // namespace
}  // namespace e2e
