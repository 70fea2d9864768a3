// Each operation of the runtime's device-side interfaces sits at the position the runtime calls
// it by: calling table entry N-1 runs the operation at position N with the given arguments.
#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>

#include "OperationLog.h"
#include "RawVtable.h"
#include "ReservedPositions.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace {

using sdktest::addressText;
using sdktest::callSlot;
using sdktest::expectReservedPositions;
using sdktest::indexOfPosition;
using sdktest::OperationLog;

constexpr const wchar_t* kDevicePath = L"hid/vid_2f0c&pid_ac27/S1";
constexpr const wchar_t* kProductName = L"Model 5.1-X.2";

// Named operations answer 100 + their position; placeholders answer their position.
struct RecordingHostCommand final : IHostCommand {
    OperationLog log;
    SDKTEST_RESERVED(1)
    SDKTEST_RESERVED(2)
    SDKTEST_RESERVED(3)
    SDKTEST_RESERVED(4)
    SDKTEST_RESERVED(5)
    SDKTEST_RESERVED(6)
    SDKTEST_RESERVED(7)
    bool isFeatureSupported(int32_t feature) override {
        log.record("isFeatureSupported", feature);
        return feature == VEXIL_FEATURE_DISPLAY;
    }
};

struct RecordingDevice final : IDevice {
    OperationLog log;
    IHostCommand* hostCommand = nullptr;
    void Release() override { log.record("Release"); }
    SDKTEST_RESERVED(2)
    SDKTEST_RESERVED(3)
    SDKTEST_RESERVED(4)
    int32_t getDevicePath(wchar_t* buffer, int32_t capacity) override {
        log.record("getDevicePath", static_cast<const void*>(buffer), capacity);
        std::wcsncpy(buffer, kDevicePath, static_cast<std::size_t>(capacity));
        return 105;
    }
    SDKTEST_RESERVED(6)
    int32_t getProductName(wchar_t* buffer, int32_t capacity) override {
        log.record("getProductName", static_cast<const void*>(buffer), capacity);
        std::wcsncpy(buffer, kProductName, static_cast<std::size_t>(capacity));
        return 107;
    }
    SDKTEST_RESERVED(8)
    SDKTEST_RESERVED(9)
    SDKTEST_RESERVED(10)
    SDKTEST_RESERVED(11)
    SDKTEST_RESERVED(12)
    SDKTEST_RESERVED(13)
    SDKTEST_RESERVED(14)
    int32_t getHostCommand(IHostCommand** out) override {
        log.record("getHostCommand", static_cast<const void*>(out));
        *out = hostCommand;
        return 115;
    }
};

struct RecordingDeviceEnumerator final : IDeviceEnumerator {
    OperationLog log;
    IDevice* device = nullptr;
    void Release() override { log.record("Release"); }
    IDevice* current() override {
        log.record("current");
        return device;
    }
    int32_t moveNext() override {
        log.record("moveNext");
        return 103;
    }
};

struct RecordingDeviceEnumeration final : IDeviceEnumeration {
    OperationLog log;
    void Release() override { log.record("Release"); }
    SDKTEST_RESERVED(2)
    int32_t count() override {
        log.record("count");
        return 103;
    }
};

struct RecordingDeviceManager final : IDeviceManager {
    OperationLog log;
    IDeviceEnumeration* devices = nullptr;
    SDKTEST_RESERVED(1)
    SDKTEST_RESERVED(2)
    SDKTEST_RESERVED(3)
    SDKTEST_RESERVED(4)
    int32_t getDevices(IDeviceEnumeration** out) override {
        log.record("getDevices", static_cast<const void*>(out));
        *out = devices;
        return 105;
    }
};

TEST(DeviceVtable, ReleaseIsPositionOne) {
    RecordingDevice device;
    IDevice* object = &device;
    callSlot<void()>(object, indexOfPosition(1));
    EXPECT_EQ(device.log.last(), "Release()");
}

TEST(DeviceVtable, GetDevicePathIsPositionFiveAndFillsTheBuffer) {
    RecordingDevice device;
    IDevice* object = &device;
    wchar_t buffer[VEXIL_DEVICE_PATH_CHARS] = {};
    EXPECT_EQ((callSlot<int32_t(wchar_t*, int32_t)>(object, indexOfPosition(5), buffer, 260)), 105);
    EXPECT_STREQ(buffer, kDevicePath);
    EXPECT_EQ(device.log.last(), "getDevicePath(" + addressText(buffer) + ",260)");
}

TEST(DeviceVtable, GetProductNameIsPositionSevenAndFillsTheBuffer) {
    RecordingDevice device;
    IDevice* object = &device;
    wchar_t buffer[64] = {};
    EXPECT_EQ((callSlot<int32_t(wchar_t*, int32_t)>(object, indexOfPosition(7), buffer, 64)), 107);
    EXPECT_STREQ(buffer, kProductName);
    EXPECT_EQ(device.log.last(), "getProductName(" + addressText(buffer) + ",64)");
}

TEST(DeviceVtable, GetHostCommandIsPositionFifteenAndFillsTheOutput) {
    RecordingDevice device;
    RecordingHostCommand hostCommand;
    device.hostCommand = &hostCommand;
    IDevice* object = &device;
    IHostCommand* out = nullptr;
    EXPECT_EQ(callSlot<int32_t(IHostCommand**)>(object, indexOfPosition(15), &out), 115);
    EXPECT_EQ(out, &hostCommand);
    EXPECT_EQ(device.log.last(), "getHostCommand(" + addressText(&out) + ")");
}

TEST(DeviceVtable, PlaceholdersFillTheOtherPositions) {
    RecordingDevice device;
    expectReservedPositions<IDevice>(device, {2, 3, 4, 6, 8, 9, 10, 11, 12, 13, 14});
}

TEST(HostCommandVtable, IsFeatureSupportedIsPositionEight) {
    RecordingHostCommand hostCommand;
    IHostCommand* object = &hostCommand;
    EXPECT_TRUE(callSlot<bool(int32_t)>(object, indexOfPosition(8), VEXIL_FEATURE_DISPLAY));
    EXPECT_EQ(hostCommand.log.last(), "isFeatureSupported(18)");
    EXPECT_FALSE(callSlot<bool(int32_t)>(object, indexOfPosition(8), 3));
    EXPECT_EQ(hostCommand.log.last(), "isFeatureSupported(3)");
}

TEST(HostCommandVtable, PlaceholdersFillTheOtherPositions) {
    RecordingHostCommand hostCommand;
    expectReservedPositions<IHostCommand>(hostCommand, {1, 2, 3, 4, 5, 6, 7});
}

TEST(DeviceEnumeratorVtable, ReleaseCurrentAndMoveNextArePositionsOneToThree) {
    RecordingDeviceEnumerator enumerator;
    RecordingDevice device;
    enumerator.device = &device;
    IDeviceEnumerator* object = &enumerator;
    callSlot<void()>(object, indexOfPosition(1));
    EXPECT_EQ(enumerator.log.last(), "Release()");
    EXPECT_EQ(callSlot<IDevice*()>(object, indexOfPosition(2)), &device);
    EXPECT_EQ(enumerator.log.last(), "current()");
    EXPECT_EQ(callSlot<int32_t()>(object, indexOfPosition(3)), 103);
    EXPECT_EQ(enumerator.log.last(), "moveNext()");
}

TEST(DeviceManagerVtable, GetDevicesIsPositionFiveAndFillsTheOutput) {
    RecordingDeviceManager manager;
    RecordingDeviceEnumeration devices;
    manager.devices = &devices;
    IDeviceManager* object = &manager;
    IDeviceEnumeration* out = nullptr;
    EXPECT_EQ(callSlot<int32_t(IDeviceEnumeration**)>(object, indexOfPosition(5), &out), 105);
    EXPECT_EQ(out, &devices);
    EXPECT_EQ(manager.log.last(), "getDevices(" + addressText(&out) + ")");
}

TEST(DeviceManagerVtable, PlaceholdersFillTheOtherPositions) {
    RecordingDeviceManager manager;
    expectReservedPositions<IDeviceManager>(manager, {1, 2, 3, 4});
}

TEST(DeviceEnumerationVtable, ReleaseIsPositionOneAndCountIsPositionThree) {
    RecordingDeviceEnumeration devices;
    IDeviceEnumeration* object = &devices;
    callSlot<void()>(object, indexOfPosition(1));
    EXPECT_EQ(devices.log.last(), "Release()");
    EXPECT_EQ(callSlot<int32_t()>(object, indexOfPosition(3)), 103);
    EXPECT_EQ(devices.log.last(), "count()");
}

TEST(DeviceEnumerationVtable, PlaceholderFillsPositionTwo) {
    RecordingDeviceEnumeration devices;
    expectReservedPositions<IDeviceEnumeration>(devices, {2});
}

}  // namespace
