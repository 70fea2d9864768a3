#include "bqlutil/DeviceIds.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using Brimquell::get_vid_pid_from_device_path;

constexpr uint16_t kUntouched = 0x1234;

struct Ids {
  bool found;
  uint16_t vid;
  uint16_t pid;
};

Ids parse(const std::wstring& path) {
  Ids ids{false, kUntouched, kUntouched};
  ids.found = get_vid_pid_from_device_path(path, &ids.vid, &ids.pid);
  return ids;
}

TEST(DeviceIdsTest, TypicalPathGivesBothIds) {
  const Ids ids = parse(L"hid/vid_2f0c&pid_0a1b/SN123");

  EXPECT_TRUE(ids.found);
  EXPECT_EQ(ids.vid, BRIMQUELL_USB_VID);
  EXPECT_EQ(ids.pid, 0x0A1B);
}

TEST(DeviceIdsTest, MarkersAndDigitsMayBeInAnyCase) {
  const Ids upper = parse(L"HID\\VID_2F0C&PID_0A1B\\SN123");
  const Ids mixed = parse(L"hid/Vid_2f0C&pId_0A1b");

  EXPECT_TRUE(upper.found);
  EXPECT_EQ(upper.vid, 0x2F0C);
  EXPECT_EQ(upper.pid, 0x0A1B);
  EXPECT_TRUE(mixed.found);
  EXPECT_EQ(mixed.vid, 0x2F0C);
  EXPECT_EQ(mixed.pid, 0x0A1B);
}

TEST(DeviceIdsTest, OneToFourDigitsAreRead) {
  EXPECT_EQ(parse(L"vid_1&pid_a").vid, 0x1);
  EXPECT_EQ(parse(L"vid_1&pid_a").pid, 0xA);
  EXPECT_EQ(parse(L"vid_12&pid_ab").vid, 0x12);
  EXPECT_EQ(parse(L"vid_123&pid_abc").pid, 0xABC);
  EXPECT_EQ(parse(L"vid_1234&pid_abcd").vid, 0x1234);
  EXPECT_EQ(parse(L"vid_1234&pid_abcd").pid, 0xABCD);
}

TEST(DeviceIdsTest, FifthDigitIsNotRead) {
  const Ids ids = parse(L"vid_2f0c7&pid_0a1b9/SN");

  EXPECT_TRUE(ids.found);
  EXPECT_EQ(ids.vid, 0x2F0C);
  EXPECT_EQ(ids.pid, 0x0A1B);
}

TEST(DeviceIdsTest, DigitsEndAtTheFirstNonHexCharacter) {
  const Ids ids = parse(L"vid_2g&pid_0x1");

  EXPECT_TRUE(ids.found);
  EXPECT_EQ(ids.vid, 0x2);
  EXPECT_EQ(ids.pid, 0x0);
}

TEST(DeviceIdsTest, ProductIdMayComeFirst) {
  const Ids ids = parse(L"usb/pid_0a1b/vid_2f0c");

  EXPECT_TRUE(ids.found);
  EXPECT_EQ(ids.vid, 0x2F0C);
  EXPECT_EQ(ids.pid, 0x0A1B);
}

TEST(DeviceIdsTest, MissingVendorIdFailsAndWritesNothing) {
  const Ids ids = parse(L"hid/pid_0a1b/SN123");

  EXPECT_FALSE(ids.found);
  EXPECT_EQ(ids.vid, kUntouched);
  EXPECT_EQ(ids.pid, kUntouched);
}

TEST(DeviceIdsTest, MissingProductIdFailsAndWritesNothing) {
  const Ids ids = parse(L"hid/vid_2f0c/SN123");

  EXPECT_FALSE(ids.found);
  EXPECT_EQ(ids.vid, kUntouched);
  EXPECT_EQ(ids.pid, kUntouched);
}

TEST(DeviceIdsTest, MarkerWithoutDigitsCountsAsMissing) {
  const Ids ids = parse(L"hid/vid_&pid_0a1b");

  EXPECT_FALSE(ids.found);
  EXPECT_EQ(ids.vid, kUntouched);
  EXPECT_EQ(ids.pid, kUntouched);
}

TEST(DeviceIdsTest, LaterMarkerWithDigitsIsUsedWhenTheFirstHasNone) {
  const Ids ids = parse(L"vid_x/vid_2f0c&pid_0a1b");

  EXPECT_TRUE(ids.found);
  EXPECT_EQ(ids.vid, 0x2F0C);
}

TEST(DeviceIdsTest, EmptyAndUnrelatedPathsFail) {
  EXPECT_FALSE(parse(L"").found);
  EXPECT_FALSE(parse(L"Model 5.1-X.2").found);
  EXPECT_FALSE(parse(L"vid_").found);
  EXPECT_FALSE(parse(L"vi").found);
}

TEST(DeviceIdsTest, WideDigitsOutsideAsciiAreNotHex) {
  // Full-width digit one, U+FF11.
  EXPECT_FALSE(parse(std::wstring(L"vid_") + static_cast<wchar_t>(0xFF11) + L"&pid_1").found);
}

TEST(DeviceIdsTest, NullOutputsAreSkipped) {
  uint16_t pid = kUntouched;
  uint16_t vid = kUntouched;

  EXPECT_TRUE(get_vid_pid_from_device_path(L"hid/vid_2f0c&pid_0a1b", nullptr, &pid));
  EXPECT_TRUE(get_vid_pid_from_device_path(L"hid/vid_2f0c&pid_0a1b", &vid, nullptr));
  EXPECT_TRUE(get_vid_pid_from_device_path(L"hid/vid_2f0c&pid_0a1b", nullptr, nullptr));

  EXPECT_EQ(pid, 0x0A1B);
  EXPECT_EQ(vid, 0x2F0C);
}

}  // namespace
