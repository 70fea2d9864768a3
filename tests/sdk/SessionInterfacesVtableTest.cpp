// Each operation of the runtime's session-side interfaces sits at the position the runtime calls
// it by: calling table entry N-1 runs the operation at position N with the given arguments.
#include <gtest/gtest.h>

#include <cstdint>

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

// Named operations answer 100 + their position; placeholders answer their position.
struct RecordingSoftphoneDefaults final : ISoftphoneDefaults {
    OperationLog log;
    SDKTEST_RESERVED(1)
    SDKTEST_RESERVED(2)
    SDKTEST_RESERVED(3)
    SDKTEST_RESERVED(4)
    SDKTEST_RESERVED(5)
    SDKTEST_RESERVED(6)
    SDKTEST_RESERVED(7)
    SDKTEST_RESERVED(8)
    SDKTEST_RESERVED(9)
    SDKTEST_RESERVED(10)
    SDKTEST_RESERVED(11)
    SDKTEST_RESERVED(12)
    SDKTEST_RESERVED(13)
    int32_t setDefaultSoftphone(int32_t pluginId) override {
        log.record("setDefaultSoftphone", pluginId);
        return 114;
    }
};

struct RecordingCallCommand final : ICallCommand {
    OperationLog log;
    void Release() override { log.record("Release"); }
    int32_t incomingCall(ICall* call, IContact* contact, int32_t a, int32_t b) override {
        log.record("incomingCall", static_cast<const void*>(call), static_cast<const void*>(contact), a, b);
        return 102;
    }
    int32_t outgoingCall(ICall* call, IContact* contact, int32_t a) override {
        log.record("outgoingCall", static_cast<const void*>(call), static_cast<const void*>(contact), a);
        return 103;
    }
    int32_t terminateCall(ICall* call) override {
        log.record("terminateCall", static_cast<const void*>(call));
        return 104;
    }
    int32_t answeredCall(ICall* call) override {
        log.record("answeredCall", static_cast<const void*>(call));
        return 105;
    }
    int32_t holdCall(ICall* call) override {
        log.record("holdCall", static_cast<const void*>(call));
        return 106;
    }
    int32_t resumeCall(ICall* call) override {
        log.record("resumeCall", static_cast<const void*>(call));
        return 107;
    }
    int32_t insertCall(ICall* call, IContact* contact) override {
        log.record("insertCall", static_cast<const void*>(call), static_cast<const void*>(contact));
        return 108;
    }
    int32_t setMute(bool mute) override {
        log.record("setMute", mute);
        return 109;
    }
};

struct RecordingSession final : ISession {
    OperationLog log;
    ICallCommand* command = nullptr;
    IDevice* device = nullptr;
    void Release() override { log.record("Release"); }
    SDKTEST_RESERVED(2)
    int32_t getPluginId(int32_t* pluginId) override {
        log.record("getPluginId", static_cast<const void*>(pluginId));
        *pluginId = 4711;
        return 103;
    }
    SDKTEST_RESERVED(4)
    int32_t registerCallback(ICallEvents* events) override {
        log.record("registerCallback", static_cast<const void*>(events));
        return 105;
    }
    int32_t unregisterCallback(ICallEvents* events) override {
        log.record("unregisterCallback", static_cast<const void*>(events));
        return 106;
    }
    int32_t getCallCommand(ICallCommand** out) override {
        log.record("getCallCommand", static_cast<const void*>(out));
        *out = command;
        return 107;
    }
    SDKTEST_RESERVED(8)
    int32_t getActiveDevice(IDevice** out) override {
        log.record("getActiveDevice", static_cast<const void*>(out));
        *out = device;
        return 109;
    }
};

struct RecordingSessionManager final : ISessionManager {
    OperationLog log;
    ISoftphoneDefaults* defaults = nullptr;
    SDKTEST_RESERVED(1)
    int32_t unregisterSession(ISession* session) override {
        log.record("unregisterSession", static_cast<const void*>(session));
        return 102;
    }
    int32_t setPluginStatus(int32_t pluginId, int32_t status) override {
        log.record("setPluginStatus", pluginId, status);
        return 103;
    }
    SDKTEST_RESERVED(4)
    SDKTEST_RESERVED(5)
    SDKTEST_RESERVED(6)
    int32_t registerCallback(ISessionManagerEvents* events) override {
        log.record("registerCallback", static_cast<const void*>(events));
        return 107;
    }
    int32_t unregisterCallback(ISessionManagerEvents* events) override {
        log.record("unregisterCallback", static_cast<const void*>(events));
        return 108;
    }
    int32_t getSoftphoneDefaults(ISoftphoneDefaults** out) override {
        log.record("getSoftphoneDefaults", static_cast<const void*>(out));
        *out = defaults;
        return 109;
    }
};

struct RecordingSessionManagerInt final : ISessionManagerInt {
    OperationLog log;
    ISession* session = nullptr;
    IDeviceEnumerator* enumerator = nullptr;
    int32_t registerSession(const wchar_t* name, int32_t kind, ISession** out) override {
        log.record("registerSession", name, kind, static_cast<const void*>(out));
        *out = session;
        return 101;
    }
    SDKTEST_RESERVED(2)
    SDKTEST_RESERVED(3)
    SDKTEST_RESERVED(4)
    SDKTEST_RESERVED(5)
    SDKTEST_RESERVED(6)
    SDKTEST_RESERVED(7)
    SDKTEST_RESERVED(8)
    SDKTEST_RESERVED(9)
    SDKTEST_RESERVED(10)
    SDKTEST_RESERVED(11)
    SDKTEST_RESERVED(12)
    int32_t getDeviceEnumerator(IDeviceEnumerator** out) override {
        log.record("getDeviceEnumerator", static_cast<const void*>(out));
        *out = enumerator;
        return 113;
    }
    SDKTEST_RESERVED(14)
    SDKTEST_RESERVED(15)
    SDKTEST_RESERVED(16)
    int32_t refreshDevices(int32_t mode) override {
        log.record("refreshDevices", mode);
        return 117;
    }
    SDKTEST_RESERVED(18)
    int32_t setActiveDevice(const wchar_t* path) override {
        log.record("setActiveDevice", path);
        return 119;
    }
};

// Arguments that are only passed along, never used, need an address and nothing more.
template <typename Interface>
Interface* standIn(int& anchor) {
    return reinterpret_cast<Interface*>(&anchor);
}

TEST(SessionManagerVtable, UnregisterSessionIsPositionTwo) {
    RecordingSessionManager manager;
    RecordingSession session;
    ISessionManager* object = &manager;
    ISession* argument = &session;
    EXPECT_EQ(callSlot<int32_t(ISession*)>(object, indexOfPosition(2), argument), 102);
    EXPECT_EQ(manager.log.last(), "unregisterSession(" + addressText(argument) + ")");
}

TEST(SessionManagerVtable, SetPluginStatusIsPositionThree) {
    RecordingSessionManager manager;
    ISessionManager* object = &manager;
    EXPECT_EQ(callSlot<int32_t(int32_t, int32_t)>(object, indexOfPosition(3), 7, VEXIL_PLUGIN_INACTIVE), 103);
    EXPECT_EQ(manager.log.last(), "setPluginStatus(7,5)");
}

TEST(SessionManagerVtable, RegisterAndUnregisterCallbackArePositionsSevenAndEight) {
    RecordingSessionManager manager;
    ISessionManager* object = &manager;
    int anchor = 0;
    ISessionManagerEvents* events = standIn<ISessionManagerEvents>(anchor);
    EXPECT_EQ(callSlot<int32_t(ISessionManagerEvents*)>(object, indexOfPosition(7), events), 107);
    EXPECT_EQ(manager.log.last(), "registerCallback(" + addressText(events) + ")");
    EXPECT_EQ(callSlot<int32_t(ISessionManagerEvents*)>(object, indexOfPosition(8), events), 108);
    EXPECT_EQ(manager.log.last(), "unregisterCallback(" + addressText(events) + ")");
}

TEST(SessionManagerVtable, GetSoftphoneDefaultsIsPositionNineAndFillsTheOutput) {
    RecordingSessionManager manager;
    RecordingSoftphoneDefaults defaults;
    manager.defaults = &defaults;
    ISessionManager* object = &manager;
    ISoftphoneDefaults* out = nullptr;
    EXPECT_EQ(callSlot<int32_t(ISoftphoneDefaults**)>(object, indexOfPosition(9), &out), 109);
    EXPECT_EQ(out, &defaults);
    EXPECT_EQ(manager.log.last(), "getSoftphoneDefaults(" + addressText(&out) + ")");
}

TEST(SessionManagerVtable, PlaceholdersFillTheOtherPositions) {
    RecordingSessionManager manager;
    expectReservedPositions<ISessionManager>(manager, {1, 4, 5, 6});
}

TEST(SoftphoneDefaultsVtable, SetDefaultSoftphoneIsPositionFourteen) {
    RecordingSoftphoneDefaults defaults;
    ISoftphoneDefaults* object = &defaults;
    EXPECT_EQ(callSlot<int32_t(int32_t)>(object, indexOfPosition(14), 33), 114);
    EXPECT_EQ(defaults.log.last(), "setDefaultSoftphone(33)");
}

TEST(SoftphoneDefaultsVtable, PlaceholdersFillTheOtherPositions) {
    RecordingSoftphoneDefaults defaults;
    expectReservedPositions<ISoftphoneDefaults>(defaults, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13});
}

TEST(SessionManagerIntVtable, RegisterSessionIsPositionOneAndFillsTheOutput) {
    RecordingSessionManagerInt manager;
    RecordingSession session;
    manager.session = &session;
    ISessionManagerInt* object = &manager;
    ISession* out = nullptr;
    EXPECT_EQ(callSlot<int32_t(const wchar_t*, int32_t, ISession**)>(object, indexOfPosition(1), VEXIL_SOFTPHONE_COLLOQ,
                                                                     VEXIL_SESSION_KIND_SOFTPHONE, &out),
              101);
    EXPECT_EQ(out, &session);
    EXPECT_EQ(manager.log.last(), "registerSession(\"Veltra Colloq\",3100," + addressText(&out) + ")");
}

TEST(SessionManagerIntVtable, GetDeviceEnumeratorIsPositionThirteen) {
    RecordingSessionManagerInt manager;
    int anchor = 0;
    manager.enumerator = standIn<IDeviceEnumerator>(anchor);
    ISessionManagerInt* object = &manager;
    IDeviceEnumerator* out = nullptr;
    EXPECT_EQ(callSlot<int32_t(IDeviceEnumerator**)>(object, indexOfPosition(13), &out), 113);
    EXPECT_EQ(out, manager.enumerator);
    EXPECT_EQ(manager.log.last(), "getDeviceEnumerator(" + addressText(&out) + ")");
}

TEST(SessionManagerIntVtable, RefreshDevicesIsPositionSeventeen) {
    RecordingSessionManagerInt manager;
    ISessionManagerInt* object = &manager;
    EXPECT_EQ(callSlot<int32_t(int32_t)>(object, indexOfPosition(17), 2), 117);
    EXPECT_EQ(manager.log.last(), "refreshDevices(2)");
}

TEST(SessionManagerIntVtable, SetActiveDeviceIsPositionNineteen) {
    RecordingSessionManagerInt manager;
    ISessionManagerInt* object = &manager;
    EXPECT_EQ(callSlot<int32_t(const wchar_t*)>(object, indexOfPosition(19), L"hid/vid_2f0c&pid_ac27/S1"), 119);
    EXPECT_EQ(manager.log.last(), "setActiveDevice(\"hid/vid_2f0c&pid_ac27/S1\")");
}

TEST(SessionManagerIntVtable, PlaceholdersFillTheOtherPositions) {
    RecordingSessionManagerInt manager;
    expectReservedPositions<ISessionManagerInt>(manager, {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 14, 15, 16, 18});
}

TEST(SessionVtable, ReleaseIsPositionOne) {
    RecordingSession session;
    ISession* object = &session;
    callSlot<void()>(object, indexOfPosition(1));
    EXPECT_EQ(session.log.last(), "Release()");
}

TEST(SessionVtable, GetPluginIdIsPositionThreeAndFillsTheOutput) {
    RecordingSession session;
    ISession* object = &session;
    int32_t pluginId = 0;
    EXPECT_EQ(callSlot<int32_t(int32_t*)>(object, indexOfPosition(3), &pluginId), 103);
    EXPECT_EQ(pluginId, 4711);
    EXPECT_EQ(session.log.last(), "getPluginId(" + addressText(&pluginId) + ")");
}

TEST(SessionVtable, RegisterAndUnregisterCallbackArePositionsFiveAndSix) {
    RecordingSession session;
    ISession* object = &session;
    int anchor = 0;
    ICallEvents* events = standIn<ICallEvents>(anchor);
    EXPECT_EQ(callSlot<int32_t(ICallEvents*)>(object, indexOfPosition(5), events), 105);
    EXPECT_EQ(session.log.last(), "registerCallback(" + addressText(events) + ")");
    EXPECT_EQ(callSlot<int32_t(ICallEvents*)>(object, indexOfPosition(6), events), 106);
    EXPECT_EQ(session.log.last(), "unregisterCallback(" + addressText(events) + ")");
}

TEST(SessionVtable, GetCallCommandIsPositionSevenAndFillsTheOutput) {
    RecordingSession session;
    RecordingCallCommand command;
    session.command = &command;
    ISession* object = &session;
    ICallCommand* out = nullptr;
    EXPECT_EQ(callSlot<int32_t(ICallCommand**)>(object, indexOfPosition(7), &out), 107);
    EXPECT_EQ(out, &command);
    EXPECT_EQ(session.log.last(), "getCallCommand(" + addressText(&out) + ")");
}

TEST(SessionVtable, GetActiveDeviceIsPositionNineAndFillsTheOutput) {
    RecordingSession session;
    int anchor = 0;
    session.device = standIn<IDevice>(anchor);
    ISession* object = &session;
    IDevice* out = nullptr;
    EXPECT_EQ(callSlot<int32_t(IDevice**)>(object, indexOfPosition(9), &out), 109);
    EXPECT_EQ(out, session.device);
    EXPECT_EQ(session.log.last(), "getActiveDevice(" + addressText(&out) + ")");
}

TEST(SessionVtable, PlaceholdersFillTheOtherPositions) {
    RecordingSession session;
    expectReservedPositions<ISession>(session, {2, 4, 8});
}

class CallCommandVtable : public ::testing::Test {
protected:
    RecordingCallCommand command;
    ICallCommand* object = &command;
    int callAnchor = 0;
    int contactAnchor = 0;
    ICall* call = reinterpret_cast<ICall*>(&callAnchor);
    IContact* contact = reinterpret_cast<IContact*>(&contactAnchor);
    std::string callText = addressText(call);
    std::string contactText = addressText(contact);
};

TEST_F(CallCommandVtable, ReleaseIsPositionOne) {
    callSlot<void()>(object, indexOfPosition(1));
    EXPECT_EQ(command.log.last(), "Release()");
}

TEST_F(CallCommandVtable, IncomingCallIsPositionTwo) {
    EXPECT_EQ((callSlot<int32_t(ICall*, IContact*, int32_t, int32_t)>(object, indexOfPosition(2), call, contact, 0, 1)),
              102);
    EXPECT_EQ(command.log.last(), "incomingCall(" + callText + "," + contactText + ",0,1)");
}

TEST_F(CallCommandVtable, OutgoingCallIsPositionThree) {
    EXPECT_EQ((callSlot<int32_t(ICall*, IContact*, int32_t)>(object, indexOfPosition(3), call, contact, 9)), 103);
    EXPECT_EQ(command.log.last(), "outgoingCall(" + callText + "," + contactText + ",9)");
}

TEST_F(CallCommandVtable, SingleCallOperationsArePositionsFourToSeven) {
    const struct {
        int position;
        const char* operation;
    } expected[] = {{4, "terminateCall"}, {5, "answeredCall"}, {6, "holdCall"}, {7, "resumeCall"}};
    for (const auto& slot : expected) {
        SCOPED_TRACE(slot.operation);
        EXPECT_EQ(callSlot<int32_t(ICall*)>(object, indexOfPosition(slot.position), call), 100 + slot.position);
        EXPECT_EQ(command.log.last(), std::string(slot.operation) + "(" + callText + ")");
    }
}

TEST_F(CallCommandVtable, InsertCallIsPositionEight) {
    EXPECT_EQ((callSlot<int32_t(ICall*, IContact*)>(object, indexOfPosition(8), call, contact)), 108);
    EXPECT_EQ(command.log.last(), "insertCall(" + callText + "," + contactText + ")");
}

TEST_F(CallCommandVtable, SetMuteIsPositionNine) {
    EXPECT_EQ(callSlot<int32_t(bool)>(object, indexOfPosition(9), true), 109);
    EXPECT_EQ(command.log.last(), "setMute(true)");
    EXPECT_EQ(callSlot<int32_t(bool)>(object, indexOfPosition(9), false), 109);
    EXPECT_EQ(command.log.last(), "setMute(false)");
}

}  // namespace
