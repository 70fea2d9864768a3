// Failures armed through the control interface: every injectable operation fails with the
// chosen status, leaves its out-parameters empty and changes nothing, then recovers.
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "RuntimeFixture.h"

namespace vexiltest {
namespace {

constexpr int32_t kInjected = 4242;
constexpr int32_t kFreshCall = 7;

// Everything an operation of the table needs, set up before each test.
struct World {
    ISessionManager* manager = nullptr;
    ISessionManagerInt* managerInt = nullptr;
    IDeviceManager* deviceManager = nullptr;
    ISession* session = nullptr;
    int32_t pluginId = 0;
    ICallCommand* command = nullptr;
    IDevice* device = nullptr;
    ISoftphoneDefaults* defaults = nullptr;
    ICallEvents* callEvents = nullptr;
    ISessionManagerEvents* managerEvents = nullptr;
    ICallEvents* spareCallEvents = nullptr;
    ISessionManagerEvents* spareManagerEvents = nullptr;
    std::string secondHeadset;
};

struct Outcome {
    int32_t status;
    bool outIsEmpty;  // the out-parameter (if any) was left null, zero or untouched
};

struct FaultCase {
    const char* name;
    int32_t statusWithoutFault;
    std::function<Outcome(World&)> invoke;
};

// Test names and failure messages show the operation, not the bytes of the case.
void PrintTo(const FaultCase& operation, std::ostream* out) {
    *out << operation.name;
}

// An out-pointer starts as garbage, so that leaving it null shows.
template <class T>
T* garbage() {
    return reinterpret_cast<T*>(0x1);
}

template <class T>
Outcome handedOut(int32_t status, T* out) {
    const bool empty = out == nullptr;
    if (out != nullptr && out != garbage<T>()) {
        out->Release();
    }
    return {status, empty};
}

template <class T>
Outcome singleton(int32_t status, T* out) {
    return {status, out == nullptr};
}

Outcome plain(int32_t status) {
    return {status, true};
}

template <class Read>
Outcome readText(Read read) {
    wchar_t buffer[VEXIL_DEVICE_PATH_CHARS];
    buffer[0] = L'#';
    const int32_t status = read(buffer);
    return {status, buffer[0] == L'#'};
}

FakeCall freshCall(kFreshCall);
FakeContact contact(L"Ada", L"+44 20 7946 0000");

const std::vector<FaultCase>& faultCases() {
    static const std::vector<FaultCase> cases = {
        {"getSessionManager", VEXIL_OK,
         [](World&) {
             ISessionManager* out = garbage<ISessionManager>();
             const int32_t status = getSessionManager(&out);
             return singleton(status, out);
         }},
        {"getSessionManagerInt", VEXIL_OK,
         [](World&) {
             ISessionManagerInt* out = garbage<ISessionManagerInt>();
             const int32_t status = getSessionManagerInt(&out);
             return singleton(status, out);
         }},
        {"getDeviceManager", VEXIL_OK,
         [](World&) {
             IDeviceManager* out = garbage<IDeviceManager>();
             const int32_t status = getDeviceManager(&out);
             return singleton(status, out);
         }},
        {"ISessionManager::unregisterSession", VEXIL_OK,
         [](World& w) { return plain(w.manager->unregisterSession(w.session)); }},
        {"ISessionManager::setPluginStatus", VEXIL_OK,
         [](World& w) { return plain(w.manager->setPluginStatus(w.pluginId, VEXIL_PLUGIN_ACTIVE)); }},
        {"ISessionManager::registerCallback", VEXIL_OK,
         [](World& w) { return plain(w.manager->registerCallback(w.spareManagerEvents)); }},
        {"ISessionManager::unregisterCallback", VEXIL_OK,
         [](World& w) { return plain(w.manager->unregisterCallback(w.managerEvents)); }},
        {"ISessionManager::getSoftphoneDefaults", VEXIL_OK,
         [](World& w) {
             ISoftphoneDefaults* out = garbage<ISoftphoneDefaults>();
             const int32_t status = w.manager->getSoftphoneDefaults(&out);
             return singleton(status, out);
         }},
        {"ISoftphoneDefaults::setDefaultSoftphone", VEXIL_OK,
         [](World& w) { return plain(w.defaults->setDefaultSoftphone(w.pluginId)); }},
        {"ISessionManagerInt::registerSession", VEXIL_E_ALREADY_EXISTS,
         [](World& w) {
             ISession* out = garbage<ISession>();
             const int32_t status =
                 w.managerInt->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE, &out);
             return handedOut(status, out);
         }},
        {"ISessionManagerInt::getDeviceEnumerator", VEXIL_OK,
         [](World& w) {
             IDeviceEnumerator* out = garbage<IDeviceEnumerator>();
             const int32_t status = w.managerInt->getDeviceEnumerator(&out);
             return handedOut(status, out);
         }},
        {"ISessionManagerInt::refreshDevices", VEXIL_OK,
         [](World& w) { return plain(w.managerInt->refreshDevices(1)); }},
        {"ISessionManagerInt::setActiveDevice", VEXIL_OK,
         [](World& w) { return plain(w.managerInt->setActiveDevice(wide(w.secondHeadset).c_str())); }},
        {"ISession::getPluginId", VEXIL_OK,
         [](World& w) {
             int32_t pluginId = 99;
             const int32_t status = w.session->getPluginId(&pluginId);
             return Outcome{status, pluginId == 0};
         }},
        {"ISession::registerCallback", VEXIL_OK,
         [](World& w) { return plain(w.session->registerCallback(w.spareCallEvents)); }},
        {"ISession::unregisterCallback", VEXIL_OK,
         [](World& w) { return plain(w.session->unregisterCallback(w.callEvents)); }},
        {"ISession::getCallCommand", VEXIL_OK,
         [](World& w) {
             ICallCommand* out = garbage<ICallCommand>();
             const int32_t status = w.session->getCallCommand(&out);
             return handedOut(status, out);
         }},
        {"ISession::getActiveDevice", VEXIL_OK,
         [](World& w) {
             IDevice* out = garbage<IDevice>();
             const int32_t status = w.session->getActiveDevice(&out);
             return handedOut(status, out);
         }},
        {"ICallCommand::incomingCall", VEXIL_OK,
         [](World& w) { return plain(w.command->incomingCall(&freshCall, &contact, 0, 0)); }},
        {"ICallCommand::outgoingCall", VEXIL_OK,
         [](World& w) { return plain(w.command->outgoingCall(&freshCall, &contact, 0)); }},
        {"ICallCommand::terminateCall", VEXIL_OK,
         [](World& w) { return plain(w.command->terminateCall(&freshCall)); }},
        {"ICallCommand::answeredCall", VEXIL_OK,
         [](World& w) { return plain(w.command->answeredCall(&freshCall)); }},
        {"ICallCommand::holdCall", VEXIL_OK, [](World& w) { return plain(w.command->holdCall(&freshCall)); }},
        {"ICallCommand::resumeCall", VEXIL_OK, [](World& w) { return plain(w.command->resumeCall(&freshCall)); }},
        {"ICallCommand::insertCall", VEXIL_OK,
         [](World& w) { return plain(w.command->insertCall(&freshCall, &contact)); }},
        {"ICallCommand::setMute", VEXIL_OK, [](World& w) { return plain(w.command->setMute(true)); }},
        {"IDevice::getDevicePath", VEXIL_OK,
         [](World& w) {
             return readText([&w](wchar_t* buffer) { return w.device->getDevicePath(buffer, VEXIL_DEVICE_PATH_CHARS); });
         }},
        {"IDevice::getProductName", VEXIL_OK,
         [](World& w) {
             return readText([&w](wchar_t* buffer) { return w.device->getProductName(buffer, VEXIL_DEVICE_PATH_CHARS); });
         }},
        {"IDevice::getHostCommand", VEXIL_OK,
         [](World& w) {
             IHostCommand* out = garbage<IHostCommand>();
             const int32_t status = w.device->getHostCommand(&out);
             return singleton(status, out);
         }},
        {"IDeviceManager::getDevices", VEXIL_OK,
         [](World& w) {
             IDeviceEnumeration* out = garbage<IDeviceEnumeration>();
             const int32_t status = w.deviceManager->getDevices(&out);
             return handedOut(status, out);
         }},
    };
    return cases;
}

// Everything the control interface can tell about the runtime's state.
struct Snapshot {
    VexilCtlSession session{};
    int32_t managerSubscribers = 0;
    std::string activeDevice;
    int32_t defaultSoftphone = 0;
    int32_t muted = 0;
    int32_t refreshes = 0;
    int32_t headsets = 0;
    int32_t freshCallState = 0;

    auto fields() const {
        return std::make_tuple(session.registered, session.pluginId, session.status, session.kind,
                               session.callSubscriberCount, std::string(session.name), managerSubscribers,
                               activeDevice, defaultSoftphone, muted, refreshes, headsets, freshCallState);
    }
    bool operator==(const Snapshot& other) const { return fields() == other.fields(); }
};

Snapshot snapshot() {
    Snapshot state;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_get_session(&state.session));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_manager_subscriber_count(&state.managerSubscribers));
    char path[VEXILCTL_PATH_BYTES];
    if (vexilctl_get_active_device(path, sizeof path) == VEXILCTL_OK) {
        state.activeDevice = path;
    }
    EXPECT_EQ(VEXILCTL_OK, vexilctl_get_default_softphone(&state.defaultSoftphone));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_get_mute(&state.muted));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_refresh_count(&state.refreshes));
    EXPECT_EQ(VEXILCTL_OK, vexilctl_headset_count(&state.headsets));
    if (vexilctl_get_call_state(kFreshCall, &state.freshCallState) != VEXILCTL_OK) {
        state.freshCallState = -1;
    }
    return state;
}

class FaultInjectionTest : public RuntimeTest {
protected:
    void SetUp() override {
        RuntimeTest::SetUp();
        startWithSession();
        plug(0xac27, "F1");
        world_.secondHeadset = plug(0xac28, "F2");
        ASSERT_EQ(VEXIL_OK, session_->registerCallback(&callEvents_));
        ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
        ASSERT_EQ(VEXIL_OK, manager_->getSoftphoneDefaults(&world_.defaults));
        IDevice* device = nullptr;
        ASSERT_EQ(VEXIL_OK, session_->getActiveDevice(&device));
        device_.reset(device);
        world_.manager = manager_;
        world_.managerInt = managerInt_;
        world_.deviceManager = deviceManager_;
        world_.session = session_.get();
        world_.pluginId = pluginId_;
        world_.command = callCommand();
        world_.device = device_.get();
        world_.callEvents = &callEvents_;
        world_.managerEvents = &managerEvents_;
        world_.spareCallEvents = &spareCallEvents_;
        world_.spareManagerEvents = &spareManagerEvents_;
    }

    void TearDown() override {
        ShutDownVexilRuntime();
        device_.reset();
        RuntimeTest::TearDown();
    }

    World world_;
    bql::ReleasingPtr<IDevice> device_;
    EventLog spareLog_;
    RecordingCallEvents spareCallEvents_{spareLog_};
    RecordingManagerEvents spareManagerEvents_{spareLog_};
};

class InjectableOperationTest : public FaultInjectionTest, public ::testing::WithParamInterface<FaultCase> {};

TEST_P(InjectableOperationTest, FailsOnceWithTheChosenStatusAndChangesNothing) {
    const FaultCase& operation = GetParam();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_inject_fault(operation.name, kInjected, 1));
    const Snapshot before = snapshot();
    const Outcome failed = operation.invoke(world_);
    EXPECT_EQ(kInjected, failed.status);
    EXPECT_TRUE(failed.outIsEmpty);
    EXPECT_TRUE(before == snapshot());
    EXPECT_EQ(operation.statusWithoutFault, operation.invoke(world_).status);
}

TEST_P(InjectableOperationTest, FailsEveryTimeWhenArmedForeverUntilCleared) {
    const FaultCase& operation = GetParam();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_inject_fault(operation.name, -1, VEXILCTL_FAULT_ALWAYS));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(-1, operation.invoke(world_).status);
    }
    ASSERT_EQ(VEXILCTL_OK, vexilctl_clear_faults());
    EXPECT_EQ(operation.statusWithoutFault, operation.invoke(world_).status);
}

std::string caseName(const ::testing::TestParamInfo<FaultCase>& info) {
    std::string name = info.param.name;
    for (char& c : name) {
        if (c == ':') {
            c = '_';
        }
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(EveryName, InjectableOperationTest, ::testing::ValuesIn(faultCases()), caseName);

std::set<std::string> injectableNames() {
    std::set<std::string> names;
    int32_t count = 0;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_fault_name_count(&count));
    for (int32_t i = 0; i < count; ++i) {
        char name[VEXILCTL_FAULT_NAME_BYTES];
        EXPECT_EQ(VEXILCTL_OK, vexilctl_fault_name_at(i, name, sizeof name));
        names.insert(name);
    }
    return names;
}

TEST_F(FaultInjectionTest, TheTableCoversEveryInjectableName) {
    std::set<std::string> tested;
    for (const FaultCase& operation : faultCases()) {
        tested.insert(operation.name);
    }
    EXPECT_EQ(injectableNames(), tested);
}

TEST_F(FaultInjectionTest, UnknownNamesAreRejected) {
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_inject_fault("InitVexilRuntime", 5, 1));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_inject_fault("ShutDownVexilRuntime", 5, 1));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_inject_fault("ISession::Release", 5, 1));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_inject_fault("holdCall", 5, 1));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_inject_fault("", 5, 1));
}

TEST_F(FaultInjectionTest, BadArmingArgumentsAreRejected) {
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_inject_fault(nullptr, 5, 1));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_inject_fault("ICallCommand::holdCall", 0, 1));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_inject_fault("ICallCommand::holdCall", 5, 0));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_inject_fault("ICallCommand::holdCall", 5, -2));
    FakeCall call(1);
    EXPECT_EQ(VEXIL_OK, callCommand()->holdCall(&call));
}

TEST_F(FaultInjectionTest, AFaultArmedForTwoCallsFailsTwiceThenRecovers) {
    ASSERT_EQ(VEXILCTL_OK, vexilctl_inject_fault("ISessionManagerInt::refreshDevices", 5, 2));
    EXPECT_EQ(5, managerInt_->refreshDevices(1));
    EXPECT_EQ(5, managerInt_->refreshDevices(1));
    EXPECT_EQ(VEXIL_OK, managerInt_->refreshDevices(1));
}

TEST_F(FaultInjectionTest, ArmingAgainReplacesTheFault) {
    ASSERT_EQ(VEXILCTL_OK, vexilctl_inject_fault("ICallCommand::holdCall", 5, VEXILCTL_FAULT_ALWAYS));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_inject_fault("ICallCommand::holdCall", 6, 1));
    FakeCall call(1);
    EXPECT_EQ(6, callCommand()->holdCall(&call));
    EXPECT_EQ(VEXIL_OK, callCommand()->holdCall(&call));
}

TEST_F(FaultInjectionTest, ACommandFailedOnPurposeIsLoggedWithItsStatus) {
    ASSERT_EQ(VEXILCTL_OK, vexilctl_inject_fault("ICallCommand::holdCall", 5, 1));
    FakeCall call(31);
    ASSERT_EQ(5, callCommand()->holdCall(&call));
    VexilCtlCommand command{};
    ASSERT_EQ(VEXILCTL_OK, vexilctl_command_at(0, &command));
    EXPECT_EQ(VEXILCTL_CMD_HOLD_CALL, command.command);
    EXPECT_EQ(31, command.callId);
    EXPECT_EQ(5, command.status);
}

TEST_F(FaultInjectionTest, FaultNamesAreReadBackSafely) {
    char name[4];
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_fault_name_at(-1, name, sizeof name));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_fault_name_at(0, nullptr, 10));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_fault_name_count(nullptr));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_fault_name_at(10000, name, sizeof name));
    EXPECT_EQ(VEXILCTL_E_BUFFER_TOO_SMALL, vexilctl_fault_name_at(0, name, sizeof name));
    EXPECT_STREQ("", name);
}

}  // namespace
}  // namespace vexiltest
