// Headsets as a softphone sees them: enumerators, devices, their host commands, the device
// count, and the active device.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "RuntimeFixture.h"

namespace vexiltest {
namespace {

using DeviceTest = RuntimeTest;

std::string pathOf(IDevice* device) {
    wchar_t path[VEXIL_DEVICE_PATH_CHARS] = {};
    EXPECT_EQ(VEXIL_OK, device->getDevicePath(path, VEXIL_DEVICE_PATH_CHARS));
    return narrow(path);
}

std::string productNameOf(IDevice* device) {
    wchar_t name[200] = {};
    EXPECT_EQ(VEXIL_OK, device->getProductName(name, 200));
    return narrow(name);
}

std::string activeDevice() {
    char path[VEXILCTL_PATH_BYTES];
    const int32_t status = vexilctl_get_active_device(path, sizeof path);
    return status == VEXILCTL_OK ? std::string(path) : std::string("(none)");
}

bql::ReleasingPtr<IDeviceEnumerator> enumerate(ISessionManagerInt* managerInt) {
    IDeviceEnumerator* enumerator = nullptr;
    EXPECT_EQ(VEXIL_OK, managerInt->getDeviceEnumerator(&enumerator));
    return bql::ReleasingPtr<IDeviceEnumerator>(enumerator);
}

std::vector<std::string> walk(IDeviceEnumerator* enumerator) {
    std::vector<std::string> paths;
    while (enumerator->moveNext() != 0) {
        bql::ReleasingPtr<IDevice> device(enumerator->current());
        if (device) {
            paths.push_back(pathOf(device.get()));
        }
    }
    return paths;
}

TEST_F(DeviceTest, EnumeratorStartsBeforeTheFirstDevice) {
    start();
    plug(0xac27, "E1");
    bql::ReleasingPtr<IDeviceEnumerator> enumerator = enumerate(managerInt_);
    EXPECT_EQ(nullptr, enumerator->current());
}

TEST_F(DeviceTest, EnumeratorWalksHeadsetsInTheOrderTheyCameThenEnds) {
    start();
    const std::string first = plug(0xac27, "E1");
    const std::string second = plug(0x0123, "E2", "Model 3", false);
    bql::ReleasingPtr<IDeviceEnumerator> enumerator = enumerate(managerInt_);
    EXPECT_EQ((std::vector<std::string>{first, second}), walk(enumerator.get()));
    EXPECT_EQ(0, enumerator->moveNext());
    EXPECT_EQ(nullptr, enumerator->current());
}

TEST_F(DeviceTest, EnumeratorWithoutHeadsetsEndsAtOnce) {
    start();
    bql::ReleasingPtr<IDeviceEnumerator> enumerator = enumerate(managerInt_);
    EXPECT_EQ(0, enumerator->moveNext());
    EXPECT_EQ(nullptr, enumerator->current());
}

TEST_F(DeviceTest, EnumeratorIsASnapshot) {
    start();
    const std::string first = plug(0xac27, "E1");
    bql::ReleasingPtr<IDeviceEnumerator> enumerator = enumerate(managerInt_);
    plug(0xac28, "E2");
    ASSERT_EQ(VEXILCTL_OK, vexilctl_remove_headset(first.c_str()));
    EXPECT_EQ(std::vector<std::string>{first}, walk(enumerator.get()));
}

TEST_F(DeviceTest, GetDeviceEnumeratorRejectsANullOut) {
    start();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, managerInt_->getDeviceEnumerator(nullptr));
}

TEST_F(DeviceTest, ADeviceReferenceOutlivesItsEnumerator) {
    start();
    const std::string path = plug(0xac27, "E1", "Model 5.1-X.2");
    bql::ReleasingPtr<IDeviceEnumerator> enumerator = enumerate(managerInt_);
    ASSERT_NE(0, enumerator->moveNext());
    IDevice* device = enumerator->current();
    ASSERT_NE(nullptr, device);
    enumerator.reset();
    EXPECT_EQ(path, pathOf(device));
    device->Release();
}

TEST_F(DeviceTest, EachCurrentIsItsOwnReference) {
    start();
    plug(0xac27, "E1");
    bql::ReleasingPtr<IDeviceEnumerator> enumerator = enumerate(managerInt_);
    ASSERT_NE(0, enumerator->moveNext());
    bql::ReleasingPtr<IDevice> first(enumerator->current());
    bql::ReleasingPtr<IDevice> second(enumerator->current());
    first.reset();
    enumerator.reset();
    EXPECT_EQ("Model 5.1-X.2", productNameOf(second.get()));
}

TEST_F(DeviceTest, ADeviceStaysReadableAfterItsHeadsetIsUnplugged) {
    startWithSession();
    const std::string path = plug(0xac27, "E1", "Model 5.1-X.2");
    IDevice* device = nullptr;
    ASSERT_EQ(VEXIL_OK, session_->getActiveDevice(&device));
    bql::ReleasingPtr<IDevice> held(device);
    ASSERT_EQ(VEXILCTL_OK, vexilctl_remove_headset(path.c_str()));
    EXPECT_EQ(path, pathOf(held.get()));
    EXPECT_EQ("Model 5.1-X.2", productNameOf(held.get()));
}

TEST_F(DeviceTest, TextsAreCutToTheBufferAndAlwaysTerminated) {
    startWithSession();
    plug(0xac27, "E1", "Model 5.1-X.2");
    IDevice* device = nullptr;
    ASSERT_EQ(VEXIL_OK, session_->getActiveDevice(&device));
    bql::ReleasingPtr<IDevice> held(device);
    wchar_t buffer[16];
    std::fill(std::begin(buffer), std::end(buffer), L'#');
    EXPECT_EQ(VEXIL_E_BUFFER_TOO_SMALL, held->getDevicePath(buffer, 5));
    EXPECT_EQ(std::wstring(L"hid/"), std::wstring(buffer));
    EXPECT_EQ(L'#', buffer[5]);
    EXPECT_EQ(VEXIL_E_BUFFER_TOO_SMALL, held->getProductName(buffer, 1));
    EXPECT_EQ(L'\0', buffer[0]);
    EXPECT_EQ(VEXIL_OK, held->getProductName(buffer, 14));
    EXPECT_EQ(std::wstring(L"Model 5.1-X.2"), std::wstring(buffer));
}

TEST_F(DeviceTest, TextBuffersMustExistAndHaveRoom) {
    startWithSession();
    plug(0xac27, "E1");
    IDevice* device = nullptr;
    ASSERT_EQ(VEXIL_OK, session_->getActiveDevice(&device));
    bql::ReleasingPtr<IDevice> held(device);
    wchar_t buffer[4] = {L'x', L'y', 0, 0};
    EXPECT_EQ(VEXIL_E_INVALID_ARG, held->getDevicePath(nullptr, 10));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, held->getDevicePath(buffer, 0));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, held->getProductName(buffer, -1));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, held->getProductName(nullptr, 10));
    EXPECT_EQ(L'x', buffer[0]);
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, held->reserved2());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, held->reserved14());
}

TEST_F(DeviceTest, HostCommandTellsWhetherTheHeadsetHasADisplay) {
    startWithSession();
    const std::string withDisplay = plug(0xac27, "D1", "Model 5.1-X.2", true);
    plug(0x0123, "D2", "Model 3", false);
    std::vector<bool> displays;
    bql::ReleasingPtr<IDeviceEnumerator> enumerator = enumerate(managerInt_);
    while (enumerator->moveNext() != 0) {
        bql::ReleasingPtr<IDevice> device(enumerator->current());
        IHostCommand* command = nullptr;
        ASSERT_EQ(VEXIL_OK, device->getHostCommand(&command));
        ASSERT_NE(nullptr, command);
        displays.push_back(command->isFeatureSupported(VEXIL_FEATURE_DISPLAY));
        EXPECT_FALSE(command->isFeatureSupported(17));
        EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, command->reserved1());
    }
    EXPECT_EQ((std::vector<bool>{true, false}), displays);
}

TEST_F(DeviceTest, GetHostCommandRejectsANullOut) {
    startWithSession();
    plug(0xac27, "D1");
    IDevice* device = nullptr;
    ASSERT_EQ(VEXIL_OK, session_->getActiveDevice(&device));
    bql::ReleasingPtr<IDevice> held(device);
    EXPECT_EQ(VEXIL_E_INVALID_ARG, held->getHostCommand(nullptr));
}

TEST_F(DeviceTest, DeviceManagerCountsTheHeadsets) {
    start();
    IDeviceEnumeration* devices = nullptr;
    ASSERT_EQ(VEXIL_OK, deviceManager_->getDevices(&devices));
    EXPECT_EQ(0, devices->count());
    devices->Release();
    plug(0xac27, "C1");
    plug(0xac28, "C2");
    ASSERT_EQ(VEXIL_OK, deviceManager_->getDevices(&devices));
    EXPECT_EQ(2, devices->count());
    EXPECT_EQ(VEXIL_E_NOT_SUPPORTED, devices->reserved2());
    devices->Release();
    EXPECT_EQ(VEXIL_E_INVALID_ARG, deviceManager_->getDevices(nullptr));
}

TEST_F(DeviceTest, SetActiveDeviceSwitchesToAKnownPathAndRefusesOthers) {
    start();
    const std::string first = plug(0xac27, "A1");
    const std::string second = plug(0xac28, "A2");
    EXPECT_EQ(first, activeDevice());
    EXPECT_EQ(VEXIL_OK, managerInt_->setActiveDevice(wide(second).c_str()));
    EXPECT_EQ(second, activeDevice());
    EXPECT_EQ(-1, managerInt_->setActiveDevice(L"hid/vid_2f0c&pid_ffff/NOPE"));
    EXPECT_EQ(-1, managerInt_->setActiveDevice(nullptr));
    EXPECT_EQ(second, activeDevice());
}

TEST_F(DeviceTest, RefreshDevicesIsCounted) {
    start();
    EXPECT_EQ(VEXIL_OK, managerInt_->refreshDevices(1));
    EXPECT_EQ(VEXIL_OK, managerInt_->refreshDevices(0));
    int32_t count = 0;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_refresh_count(&count));
    EXPECT_EQ(2, count);
}

TEST_F(DeviceTest, UnpluggingTheActiveHeadsetMovesToTheOneAddedAfterIt) {
    start();
    const std::string first = plug(0xac27, "M1");
    const std::string second = plug(0xac28, "M2");
    const std::string third = plug(0xac29, "M3");
    ASSERT_EQ(VEXIL_OK, managerInt_->setActiveDevice(wide(second).c_str()));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_remove_headset(second.c_str()));
    EXPECT_EQ(third, activeDevice());
    ASSERT_EQ(VEXILCTL_OK, vexilctl_remove_headset(third.c_str()));
    EXPECT_EQ(first, activeDevice());
    ASSERT_EQ(VEXILCTL_OK, vexilctl_remove_headset(first.c_str()));
    EXPECT_EQ("(none)", activeDevice());
}

TEST_F(DeviceTest, UnpluggingAnotherHeadsetKeepsTheActiveOne) {
    start();
    const std::string first = plug(0xac27, "K1");
    const std::string second = plug(0xac28, "K2");
    ASSERT_EQ(VEXILCTL_OK, vexilctl_remove_headset(second.c_str()));
    EXPECT_EQ(first, activeDevice());
}

}  // namespace
}  // namespace vexiltest
