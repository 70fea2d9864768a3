// The control interface itself: paths, headsets, and every kind of bad input it must refuse
// without changing anything.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "RuntimeFixture.h"

namespace vexiltest {
namespace {

using ControlApiTest = RuntimeTest;

int32_t headsetCount() {
    int32_t count = -1;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_headset_count(&count));
    return count;
}

std::string repeated(char c, std::size_t count) {
    return std::string(count, c);
}

TEST_F(ControlApiTest, EveryStatusHasItsOwnText) {
    for (int32_t status = VEXILCTL_OK; status <= VEXILCTL_E_INTERNAL; ++status) {
        EXPECT_STRNE("unknown status", vexilctl_status_text(status)) << status;
    }
    EXPECT_STREQ("unknown status", vexilctl_status_text(99));
    EXPECT_STREQ("timed out", vexilctl_status_text(VEXILCTL_E_TIMEOUT));
}

TEST_F(ControlApiTest, HeadsetPathsUseTheVendorIdAndLowerCaseHex) {
    char path[VEXILCTL_PATH_BYTES];
    ASSERT_EQ(VEXILCTL_OK, vexilctl_make_headset_path(0xAC27, "SN0001", path, sizeof path));
    EXPECT_STREQ("hid/vid_2f0c&pid_ac27/SN0001", path);
    ASSERT_EQ(VEXILCTL_OK, vexilctl_make_headset_path(0x12, "x", path, sizeof path));
    EXPECT_STREQ("hid/vid_2f0c&pid_0012/x", path);
}

TEST_F(ControlApiTest, HeadsetPathsRefuseBadSerialsAndBuffers) {
    char path[VEXILCTL_PATH_BYTES] = "untouched";
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_make_headset_path(1, nullptr, path, sizeof path));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_make_headset_path(1, "", path, sizeof path));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_make_headset_path(1, "a/b", path, sizeof path));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_make_headset_path(1, "\xff", path, sizeof path));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_make_headset_path(1, repeated('s', 240).c_str(), path, sizeof path));
    EXPECT_STREQ("untouched", path);
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_make_headset_path(1, "x", nullptr, 10));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_make_headset_path(1, "x", path, 0));
    EXPECT_EQ(VEXILCTL_E_BUFFER_TOO_SMALL, vexilctl_make_headset_path(1, "x", path, 10));
    EXPECT_STREQ("", path);
}

TEST_F(ControlApiTest, HeadsetsAreListedWithTheirDetails) {
    const std::string first = plug(0xac27, "L1", "Modèle 5", true);
    const std::string second = plug(0x0042, "L2", "Model 3", false);
    VexilCtlHeadset headset{};
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_at(0, &headset));
    EXPECT_EQ(first, headset.path);
    EXPECT_STREQ("Modèle 5", headset.productName);
    EXPECT_EQ(0xac27, headset.productId);
    EXPECT_EQ(1, headset.hasDisplay);
    EXPECT_EQ(1, headset.isActive);
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_at(1, &headset));
    EXPECT_EQ(second, headset.path);
    EXPECT_EQ(0, headset.hasDisplay);
    EXPECT_EQ(0, headset.isActive);
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_headset_at(2, &headset));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_headset_at(-1, &headset));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_headset_at(0, nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_headset_count(nullptr));
}

TEST_F(ControlApiTest, HeadsetsMayCarryAnyPathAndTheLongestThatFits) {
    const std::string longest = repeated('p', VEXILCTL_PATH_CHARS - 1);
    EXPECT_EQ(VEXILCTL_OK, vexilctl_add_headset(longest.c_str(), "", 0, 0));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_add_headset("usb/other-vendor/1", repeated('n', 199).c_str(), 7, 0));
    EXPECT_EQ(2, headsetCount());
}

TEST_F(ControlApiTest, AddingAHeadsetRefusesBadInputAndChangesNothing) {
    const std::string path = headsetPath(0xac27, "B1");
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset(nullptr, "Model", 1, 1));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset(path.c_str(), nullptr, 1, 1));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset("", "Model", 1, 1));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset(path.c_str(), "Model", 1, 2));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset("hid/\xc3(", "Model", 1, 1));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset(path.c_str(), "\xe2\x82", 1, 1));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_add_headset(repeated('p', VEXILCTL_PATH_CHARS).c_str(), "M", 1, 1));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_add_headset(path.c_str(), repeated('n', 200).c_str(), 1, 1));
    EXPECT_EQ(0, headsetCount());
    ASSERT_EQ(VEXILCTL_OK, vexilctl_add_headset(path.c_str(), "Model", 1, 1));
    EXPECT_EQ(VEXILCTL_E_ALREADY_EXISTS, vexilctl_add_headset(path.c_str(), "Other", 2, 0));
    EXPECT_EQ(1, headsetCount());
}

TEST_F(ControlApiTest, RemovingAnUnknownHeadsetIsRefused) {
    plug(0xac27, "R1");
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_remove_headset(headsetPath(0xac27, "R2").c_str()));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_remove_headset(nullptr));
    EXPECT_EQ(1, headsetCount());
}

TEST_F(ControlApiTest, ActiveDeviceReadsRefuseBadBuffers) {
    char path[8] = "x";
    EXPECT_EQ(VEXILCTL_E_NO_DEVICE, vexilctl_get_active_device(path, sizeof path));
    EXPECT_STREQ("", path);
    plug(0xac27, "A1");
    std::strcpy(path, "x");
    EXPECT_EQ(VEXILCTL_E_BUFFER_TOO_SMALL, vexilctl_get_active_device(path, sizeof path));
    EXPECT_STREQ("", path);
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_get_active_device(nullptr, 10));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_get_active_device(path, 0));
}

TEST_F(ControlApiTest, ButtonsRefuseUnknownDevicesAndOverlongKeys) {
    startWithSession();
    const std::string path = plug(0xac27, "K1");
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_press_button(nullptr, 1, 1, nullptr));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND,
              vexilctl_press_button(headsetPath(0xac27, "K2").c_str(), CALL_STATE_ACCEPT_CALL, 1, nullptr));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG,
              vexilctl_press_button(path.c_str(), CALL_STATE_DTMF_KEY, 1, repeated('1', 32).c_str()));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_press_button(path.c_str(), CALL_STATE_DTMF_KEY, 1, "\xff"));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_DTMF_KEY, 1, repeated('1', 31).c_str()));
}

TEST_F(ControlApiTest, DiallingRefusesMissingOrOverlongNumbers) {
    startWithSession();
    const std::string path = plug(0xac27, "D1");
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_dial(path.c_str(), nullptr, "1"));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_dial(nullptr, "1", nullptr));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_dial(path.c_str(), repeated('1', 128).c_str(), nullptr));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_dial(path.c_str(), "1", repeated('2', 128).c_str()));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_dial("hid/none", "1", nullptr));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_dial(path.c_str(), repeated('1', 127).c_str(), repeated('2', 127).c_str()));
}

TEST_F(ControlApiTest, ReportsRefuseUnknownDevices) {
    start();
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_report_call_state("hid/none", 28));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_report_call_state(nullptr, 28));
}

TEST_F(ControlApiTest, WaitingForIdleRefusesANegativeTimeAndSucceedsWhenStopped) {
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_wait_idle(-1));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_wait_idle(0));
}

TEST_F(ControlApiTest, StateReadersRefuseNullOuts) {
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_get_session(nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_manager_subscriber_count(nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_get_default_softphone(nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_get_mute(nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_refresh_count(nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_is_running(nullptr));
}

TEST_F(ControlApiTest, AnUnregisteredRuntimeReportsAnEmptySession) {
    VexilCtlSession session;
    std::memset(&session, 0x5a, sizeof session);
    ASSERT_EQ(VEXILCTL_OK, vexilctl_get_session(&session));
    EXPECT_EQ(0, session.registered);
    EXPECT_EQ(0, session.pluginId);
    EXPECT_STREQ("", session.name);
}

}  // namespace
}  // namespace vexiltest
