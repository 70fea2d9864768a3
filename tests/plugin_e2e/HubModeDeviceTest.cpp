// The active device in hub mode: the client's choice becomes requests to the hub, and the hub's
// reports of its active device replay the calls in progress.
#include "HubModeFixture.h"

namespace e2e {
namespace {

constexpr const char* kEventOfNoCall =
    "into pluginThread() case: VEXIL_CALL_EVENT, Start processing which is not related to a call";
constexpr const char* kSetActiveDeviceLocation = "virtual void BQLColloqVexilProxy::setActiveDevice(const char *)";

class HubModeDevice : public StartedInHubMode {
protected:
    void expectDeviceRequest(const HubRecord& record, int64_t deviceAction) {
        EXPECT_EQ(record.messageType, hubcode::kDeviceMessage) << describe(record);
        EXPECT_EQ(record.callState, hubcode::kDeviceRequest) << describe(record);
        EXPECT_EQ(record.deviceAction, deviceAction) << describe(record);
        EXPECT_EQ(record.callId, 0) << describe(record);
        EXPECT_EQ(record.contactName, "") << describe(record);
        EXPECT_EQ(record.phoneNumber, "") << describe(record);
        EXPECT_EQ(record.devicePath, "") << describe(record);
        // The plug-in hands its handler the product id as bare hexadecimal text ("0a1b"); the
        // proxy reads a product id only after a "pid_" marker, so both requests carry 0.
        EXPECT_EQ(record.productId, 0) << describe(record);
    }

    std::size_t pluginLinesSince(const std::string& message, uint64_t after) {
        std::size_t count = 0;
        for (const RecordedCall& line : client().journal().entriesOf(HostCall::Log)) {
            if (line.sequence > after && line.text == pluginLine(message)) {
                ++count;
            }
        }
        return count;
    }
};

TEST_F(HubModeDevice, ClientChoosingTheMakersDeviceAsksTheHubToSetItAndThenToReportIt) {
    expectDeviceRequest(setRequest, hubcode::kSetActiveDevice);
    expectDeviceRequest(getRequest, hubcode::kGetActiveDevice);

    // A set request for product id 0 leaves the hub without an active device, which it reports.
    EXPECT_EQ(getAnswer.messageType, hubcode::kDeviceMessage) << describe(getAnswer);
    EXPECT_EQ(getAnswer.deviceAction, hubcode::kNoActiveDevice) << describe(getAnswer);
    expectLocalLog("DEBUG", kSetActiveDeviceLocation, "Set active device sent to Vexil... line:0");
    expectLocalLog("DEBUG", kSetActiveDeviceLocation, "Get active device sent to Vexil...");
}

TEST_F(HubModeDevice, ClientChoosingAnotherOfTheMakersDevicesAsksTheHubAndNotTheRuntime) {
    const Headset second = plugHeadset(0x0c2d, "SN2", "Model 7.2");

    chooseClientDevice(clientDeviceId(second));

    expectDeviceRequest(expectReceived(), hubcode::kSetActiveDevice);
    expectDeviceRequest(expectReceived(), hubcode::kGetActiveDevice);
    EXPECT_EQ(runtimeActiveDevice(), headset.path) << "the runtime was asked to switch";
}

TEST_F(HubModeDevice, ActiveDeviceReportReplaysTheCallsInProgressToTheHub) {
    connectCall(51, "5550151", "Ann Kay");
    connectCall(52, "5550152", "Ben Ode");
    fireCall(CallbackSlot::OnHold, 52, clientstate::kHeld);
    expectReceivedMatching("held call", callRecord(hubcode::kHold, 52));
    // The worker marks the call held once it has told the hub.
    drainWorker();
    const uint64_t mark = clientMark();

    hubSays("active " + quoted(headset.path));

    const HubRecord report = expectDeviceReport();
    EXPECT_EQ(report.deviceAction, hubcode::kDeviceIsActive) << describe(report);
    EXPECT_EQ(report.devicePath, headset.path);
    const HubRecord first = expectReceived();
    EXPECT_EQ(first.callState, hubcode::kInsert) << describe(first);
    EXPECT_EQ(first.callId, 51);
    EXPECT_EQ(first.contactName, "Ann Kay");
    EXPECT_EQ(first.phoneNumber, "");
    const HubRecord second = expectReceived();
    EXPECT_EQ(second.callState, hubcode::kInsert) << describe(second);
    EXPECT_EQ(second.callId, 52);
    EXPECT_EQ(second.contactName, "Ben Ode");
    const HubRecord held = expectReceived();
    EXPECT_EQ(held.callState, hubcode::kHold) << describe(held);
    EXPECT_EQ(held.callId, 52);
    const HubRecord muteState = expectReceived();
    EXPECT_EQ(muteState.callState, hubcode::kMuteOff) << describe(muteState);
    EXPECT_EQ(muteState.callId, 0);

    // The report reaches the worker as an event about no call, which drives nothing.
    expectPluginLine(ACCESSORY_LOG_TRACE, kEventOfNoCall, mark);
    drainWorker();
    for (const RecordedCall& entry : client().journal().entries()) {
        if (entry.sequence > mark) {
            EXPECT_EQ(entry.call, HostCall::Log)
                << "the report drove the client: " << hostharness::hostCallName(entry.call);
        }
    }
}

TEST_F(HubModeDevice, ActiveDeviceReportWithoutCallsReplaysNothing) {
    const uint64_t mark = clientMark();
    hubSays("active " + quoted(headset.path));
    expectPluginLine(ACCESSORY_LOG_TRACE, kEventOfNoCall, mark);

    fireAudio(CallbackSlot::OnAudioUnmute);

    const HubRecord next = expectReceived();
    EXPECT_EQ(next.callState, hubcode::kMuteOff) << "the report was answered with " << describe(next);
}

TEST_F(HubModeDevice, NoActiveDeviceReportReplaysNothingAndDrivesNothing) {
    connectCall(53, "5550153", "Cy Berg");
    const uint64_t mark = clientMark();

    hubSays("no-active");
    hubSays("active " + quoted(headset.path));

    const HubRecord first = expectReceived();
    EXPECT_EQ(first.callState, hubcode::kInsert) << "the report of no device was answered with " << describe(first);
    EXPECT_EQ(first.callId, 53);
    // An event of the first report would have been queued before that of the second.
    expectPluginLine(ACCESSORY_LOG_TRACE, kEventOfNoCall, mark);
    EXPECT_EQ(pluginLinesSince(kEventOfNoCall, mark), 1u) << "the report of no device reached the worker";
}

}  // namespace
}  // namespace e2e
