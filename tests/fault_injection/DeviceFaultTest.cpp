// The runtime's device list and its active-device switch failing: the plug-in takes what it can,
// logs what the runtime refused, and follows the client again once the runtime answers.
#include <algorithm>
#include <string>
#include <vector>

#include "PluginEndToEnd.h"
#include "vexilrt/Status.h"

namespace e2e {
namespace {

class DeviceFault : public WithTwoHeadsets {
protected:
    void failNext(const char* operation, int32_t status) {
        ASSERT_EQ(vexilctl_inject_fault(operation, status, 1), VEXILCTL_OK);
    }

    std::size_t countOf(const std::vector<std::string>& lines, const std::string& line) {
        return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), line));
    }
};

TEST_F(DeviceFault, DeviceListFailingAtActivationLeavesThePluginInactiveUntilTheNextDeviceReport) {
    initializePlugin();
    failNext("IDeviceManager::getDevices", VEXIL_E_NOT_INITIALIZED);

    chooseClientDevice(clientDeviceId(first));
    fireCall(CallbackSlot::OnIncoming, 51, clientstate::kRinging, "5550151", "Cy");
    drainWorker();
    EXPECT_TRUE(runtimeCommands().empty()) << "a call reached the headset while no headset was seen";

    // The next report of the client's device sees the headsets and the plug-in serves.
    chooseClientDevice(clientDeviceId(first));
    connectIncomingCall(52, "5550152", "Di");
    const auto rung = runtimeCommandsOf(VEXILCTL_CMD_INCOMING_CALL);
    ASSERT_EQ(rung.size(), 1u);
    EXPECT_EQ(rung[0].callId, 52);
}

TEST_F(DeviceFault, DeviceWalkFailingWhileMatchingTheClientsDeviceLeavesTheHeadsetAloneUntilTheNextChoice) {
    startWithHeadset(first);
    ASSERT_EQ(runtimeActiveDevice(), first.path);
    failNext("ISessionManagerInt::getDeviceEnumerator", VEXIL_E_NOT_INITIALIZED);

    chooseClientDevice(clientDeviceId(second));
    EXPECT_EQ(runtimeActiveDevice(), first.path) << "switched without knowing the device";
    expectLocalLog("DEBUG", "GetPathFromColloqId",
                   "BQLColloqVexil::GetPidFromColloqPath device with name Model 7.2 was not found");
    const std::string switched = "BQLColloqVexil::setActiveDevice set active device with PID 0c2d returns 0";
    EXPECT_EQ(countOf(localLogMessages("DEBUG", "setActiveDevice"), switched), 0u) << localLog();

    chooseClientDevice(clientDeviceId(second));
    EXPECT_EQ(runtimeActiveDevice(), second.path);
    EXPECT_EQ(countOf(localLogMessages("DEBUG", "setActiveDevice"), switched), 1u) << localLog();
    connectIncomingCall(53, "5550153", "Eve");
}

TEST_F(DeviceFault, DeviceNameUnreadableWhileMatchingFindsNoDeviceAndLogsIt) {
    startWithHeadset(first);
    // Both headsets' names are read in the walk; neither can be matched.
    ASSERT_EQ(vexilctl_inject_fault("IDevice::getProductName", VEXIL_E_NOT_SUPPORTED, 2), VEXILCTL_OK);

    chooseClientDevice(clientDeviceId(second));

    EXPECT_EQ(runtimeActiveDevice(), first.path);
    expectLocalLog("DEBUG", "GetPathFromColloqId",
                   "BQLColloqVexil::GetPidFromColloqPath device with name Model 7.2 was not found");
    chooseClientDevice(clientDeviceId(second));
    EXPECT_EQ(runtimeActiveDevice(), second.path);
}

TEST_F(DeviceFault, ActiveDeviceSwitchRefusedLogsTheResultAndNotFoundAndCallsGoOn) {
    startWithHeadset(first);
    failNext("ISessionManagerInt::setActiveDevice", VEXIL_E_REFUSED);

    chooseClientDevice(clientDeviceId(second));

    EXPECT_EQ(runtimeActiveDevice(), first.path);
    const std::vector<std::string> lines = localLogMessages("DEBUG", "setActiveDevice");
    EXPECT_EQ(countOf(lines, "BQLColloqVexil::setActiveDevice set active device with PID 0c2d returns -1"), 1u)
        << localLog();
    EXPECT_EQ(countOf(lines, "BQLColloqVexil::setActiveVexilDevice( ) the device with PID 0c2d was not found"), 1u)
        << localLog();
    connectIncomingCall(54, "5550154", "Flo");
}

TEST_F(DeviceFault, ActiveDeviceSwitchFailingWithAnotherStatusLogsOnlyTheResult) {
    startWithHeadset(first);
    failNext("ISessionManagerInt::setActiveDevice", VEXIL_E_NOT_FOUND);

    chooseClientDevice(clientDeviceId(second));

    EXPECT_EQ(runtimeActiveDevice(), first.path);
    const std::vector<std::string> lines = localLogMessages("DEBUG", "setActiveDevice");
    EXPECT_EQ(countOf(lines, "BQLColloqVexil::setActiveDevice set active device with PID 0c2d returns 259"), 1u)
        << localLog();
    EXPECT_EQ(countOf(lines, "BQLColloqVexil::setActiveVexilDevice( ) the device with PID 0c2d was not found"), 0u)
        << localLog();
    connectIncomingCall(55, "5550155", "Gus");
}

}  // namespace
}  // namespace e2e
