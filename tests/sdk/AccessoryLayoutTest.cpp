// The client's C interface has one binary layout whether compiled as C or as C++: the call
// record's fields, every named slot of the three tables and the logger record sit at the offsets
// the client and plug-ins agree on.
#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>

#include "AccessoryLayoutC.h"
#include "colloq/AccessoryAPI.h"

namespace {

using Layout = std::map<std::string, std::size_t>;

constexpr std::size_t kSlot = sizeof(void (*)());

#define CXX_SLOT_AT(type, member, slot) static_assert(offsetof(type, member) == (slot)*kSlot, #member " is slot " #slot)

CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, getCalls, 0);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unused1, 1);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unused2, 2);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, makeCall, 3);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, answerCall, 4);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unused5, 5);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, endCall, 6);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, sendDtmf, 7);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, muteCall, 8);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unmuteCall, 9);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unused10, 10);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unused17, 17);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, holdCall, 18);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, resumeCall, 19);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unused20, 20);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, activeDeviceChanged, 21);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, releaseActiveDevice, 22);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, registerAccessoryCallbacks, 23);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, unregisterAccessoryCallbacks, 24);
CXX_SLOT_AT(Accessory_CallControlAPI_v1_0_t, rejectCall, 25);
static_assert(sizeof(Accessory_CallControlAPI_v1_0_t) == 26 * kSlot, "call-control table has 26 slots");

CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, onAudioMute, 0);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, onAudioUnmute, 1);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, empty2, 2);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, empty3, 3);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, onOffHook, 4);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, onRemoteAlerting, 12);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, onVolumeChanged, 13);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, empty14, 14);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, onActiveDeviceChanged, 15);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, empty16, 16);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, notifySubscriberNumbers, 20);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, empty21, 21);
CXX_SLOT_AT(Accessory_CallControlCallback_v1_0_t, empty22, 22);
static_assert(sizeof(Accessory_CallControlCallback_v1_0_t) == 23 * kSlot, "callback table has 23 slots");

CXX_SLOT_AT(Accessory_LoggerAPI_v1_0_t, getLogger, 0);
CXX_SLOT_AT(Accessory_LoggerAPI_v1_0_t, log, 1);
static_assert(sizeof(ACCLogger_t) == 64, "logger record is 64 bytes");
static_assert(sizeof(Accessory_CallInfo_v1_0_t) == 112, "call record is 112 bytes");

#undef CXX_SLOT_AT

Layout layoutOf(const SdkLayoutTable& table) {
    Layout layout;
    for (std::size_t i = 0; i < table.count; ++i) {
        layout[table.entries[i].member] = table.entries[i].offset;
    }
    return layout;
}

Layout slots(std::initializer_list<std::pair<const char*, std::size_t>> named) {
    Layout layout;
    for (const auto& [member, slot] : named) {
        layout[member] = slot * kSlot;
    }
    return layout;
}

#define CXX_ENTRY(type, member) \
    { #member, offsetof(type, member) }

const Layout kCallInfoLayout = {{"callId", 0},  {"reserved0", 4},    {"callState", 8}, {"conference", 12},
                                {"number", 16}, {"displayName", 49}, {"opaque", 104}};

const Layout kCallControlLayout = slots({{"getCalls", 0},
                                         {"makeCall", 3},
                                         {"answerCall", 4},
                                         {"endCall", 6},
                                         {"sendDtmf", 7},
                                         {"muteCall", 8},
                                         {"unmuteCall", 9},
                                         {"holdCall", 18},
                                         {"resumeCall", 19},
                                         {"activeDeviceChanged", 21},
                                         {"releaseActiveDevice", 22},
                                         {"registerAccessoryCallbacks", 23},
                                         {"unregisterAccessoryCallbacks", 24},
                                         {"rejectCall", 25}});

const Layout kCallbackLayout = slots({{"onAudioMute", 0},
                                      {"onAudioUnmute", 1},
                                      {"onOffHook", 4},
                                      {"onReorder", 5},
                                      {"onBusy", 6},
                                      {"onIncoming", 7},
                                      {"onCallWaiting", 8},
                                      {"onConnected", 9},
                                      {"onHold", 10},
                                      {"onOnHook", 11},
                                      {"onRemoteAlerting", 12},
                                      {"onVolumeChanged", 13},
                                      {"onActiveDeviceChanged", 15},
                                      {"setDeviceMicrophoneVolume", 17},
                                      {"setDeviceSpeakerVolume", 18},
                                      {"onPhoneRegistrationStatusChanged", 19},
                                      {"notifySubscriberNumbers", 20}});

TEST(CallInfoLayout, CCompilerPlacesEveryFieldAtTheClientsOffset) {
    const SdkLayoutTable table = sdk_c_call_info_layout();
    EXPECT_EQ(table.size, 112u);
    EXPECT_EQ(layoutOf(table), kCallInfoLayout);
}

TEST(CallInfoLayout, CxxCompilerPlacesEveryFieldAtTheClientsOffset) {
    using Info = Accessory_CallInfo_v1_0_t;
    const Layout cxx = {CXX_ENTRY(Info, callId),     CXX_ENTRY(Info, reserved0), CXX_ENTRY(Info, callState),
                        CXX_ENTRY(Info, conference), CXX_ENTRY(Info, number),    CXX_ENTRY(Info, displayName),
                        CXX_ENTRY(Info, opaque)};
    EXPECT_EQ(cxx, kCallInfoLayout);
    EXPECT_EQ(sizeof(Info::number), 33u);
    EXPECT_EQ(sizeof(Info::displayName), 55u);
    EXPECT_EQ(sizeof(Info::opaque), 8u);
}

TEST(CallControlLayout, CCompilerPlacesEveryNamedOperationInItsSlot) {
    const SdkLayoutTable table = sdk_c_call_control_layout();
    EXPECT_EQ(table.size, 26 * kSlot);
    EXPECT_EQ(layoutOf(table), kCallControlLayout);
}

TEST(CallControlLayout, CxxCompilerPlacesEveryNamedOperationInItsSlot) {
    using Api = Accessory_CallControlAPI_v1_0_t;
    const Layout cxx = {CXX_ENTRY(Api, getCalls),
                        CXX_ENTRY(Api, makeCall),
                        CXX_ENTRY(Api, answerCall),
                        CXX_ENTRY(Api, endCall),
                        CXX_ENTRY(Api, sendDtmf),
                        CXX_ENTRY(Api, muteCall),
                        CXX_ENTRY(Api, unmuteCall),
                        CXX_ENTRY(Api, holdCall),
                        CXX_ENTRY(Api, resumeCall),
                        CXX_ENTRY(Api, activeDeviceChanged),
                        CXX_ENTRY(Api, releaseActiveDevice),
                        CXX_ENTRY(Api, registerAccessoryCallbacks),
                        CXX_ENTRY(Api, unregisterAccessoryCallbacks),
                        CXX_ENTRY(Api, rejectCall)};
    EXPECT_EQ(cxx, kCallControlLayout);
    EXPECT_EQ(ACCESSORY_CALL_CONTROL_SLOTS, 26);
}

TEST(CallbackLayout, CCompilerPlacesEveryCallbackInItsSlot) {
    const SdkLayoutTable table = sdk_c_callback_layout();
    EXPECT_EQ(table.size, 23 * kSlot);
    EXPECT_EQ(layoutOf(table), kCallbackLayout);
}

TEST(CallbackLayout, CxxCompilerPlacesEveryCallbackInItsSlot) {
    using Table = Accessory_CallControlCallback_v1_0_t;
    const Layout cxx = {CXX_ENTRY(Table, onAudioMute),
                        CXX_ENTRY(Table, onAudioUnmute),
                        CXX_ENTRY(Table, onOffHook),
                        CXX_ENTRY(Table, onReorder),
                        CXX_ENTRY(Table, onBusy),
                        CXX_ENTRY(Table, onIncoming),
                        CXX_ENTRY(Table, onCallWaiting),
                        CXX_ENTRY(Table, onConnected),
                        CXX_ENTRY(Table, onHold),
                        CXX_ENTRY(Table, onOnHook),
                        CXX_ENTRY(Table, onRemoteAlerting),
                        CXX_ENTRY(Table, onVolumeChanged),
                        CXX_ENTRY(Table, onActiveDeviceChanged),
                        CXX_ENTRY(Table, setDeviceMicrophoneVolume),
                        CXX_ENTRY(Table, setDeviceSpeakerVolume),
                        CXX_ENTRY(Table, onPhoneRegistrationStatusChanged),
                        CXX_ENTRY(Table, notifySubscriberNumbers)};
    EXPECT_EQ(cxx, kCallbackLayout);
    EXPECT_EQ(ACCESSORY_CALLBACK_SLOTS, 23);
}

TEST(CallbackLayout, EmptySlotsAreTwoThreeFourteenSixteenTwentyOneAndTwentyTwo) {
    using Table = Accessory_CallControlCallback_v1_0_t;
    const Layout cxx = {CXX_ENTRY(Table, empty2),  CXX_ENTRY(Table, empty3),  CXX_ENTRY(Table, empty14),
                        CXX_ENTRY(Table, empty16), CXX_ENTRY(Table, empty21), CXX_ENTRY(Table, empty22)};
    EXPECT_EQ(
        cxx, slots({{"empty2", 2}, {"empty3", 3}, {"empty14", 14}, {"empty16", 16}, {"empty21", 21}, {"empty22", 22}}));
}

TEST(LoggerLayout, GetLoggerIsSlotZeroAndLogSlotOneInBothLanguages) {
    const Layout expected = slots({{"getLogger", 0}, {"log", 1}});
    const SdkLayoutTable table = sdk_c_logger_api_layout();
    EXPECT_EQ(table.size, 2 * kSlot);
    EXPECT_EQ(layoutOf(table), expected);
    using Api = Accessory_LoggerAPI_v1_0_t;
    EXPECT_EQ((Layout{CXX_ENTRY(Api, getLogger), CXX_ENTRY(Api, log)}), expected);
}

TEST(LoggerLayout, LoggerRecordIsSixtyFourBytesInBothLanguages) {
    EXPECT_EQ(sdk_c_logger_record_size(), 64u);
    EXPECT_EQ(sizeof(ACCLogger_t), 64u);
}

TEST(EntryPointSelectors, CallControlIs0x10001AndLoggerIs0x10002) {
    EXPECT_EQ(sdk_c_call_control_selector(), 0x10001u);
    EXPECT_EQ(sdk_c_logger_selector(), 0x10002u);
    EXPECT_EQ(sdk_c_failure_status(), -1);
}

#undef CXX_ENTRY

}  // namespace
