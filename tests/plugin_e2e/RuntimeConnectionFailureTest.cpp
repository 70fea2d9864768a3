#include "PluginEndToEnd.h"

#include <ostream>

#include "vexilrt/Status.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace e2e {
namespace {

// One step of the plug-in's connection to the runtime made to fail.
struct ConnectStepFault {
    const char* name;   // the test's name for the step
    const char* fault;  // the runtime operation that fails
    int32_t status;     // what it returns
    std::string errorLine;
    bool givesRuntimeBack;  // the plug-in shuts the runtime down again
};

std::ostream& operator<<(std::ostream& out, const ConnectStepFault& step) { return out << step.name; }

const ConnectStepFault kSteps[] = {
    {"SessionManager", "getSessionManager", VEXIL_E_NOT_INITIALIZED,
     "BQLColloqVexil: Failed to retrieve SessionManager instance from VexilRT. Returned error code: 258", false},
    // Its status is not looked at; without the interface the registration cannot be made.
    {"InternalSessionManager", "getSessionManagerInt", VEXIL_E_NOT_INITIALIZED,
     "BQLColloqVexil: Failed to register Veltra Colloq session. Returned error code: 258", true},
    {"SessionRegistration", "ISessionManagerInt::registerSession", VEXIL_E_ALREADY_EXISTS,
     "BQLColloqVexil: Failed to register Veltra Colloq session. Returned error code: 260", true},
    {"SessionCallbacks", "ISession::registerCallback", VEXIL_E_INVALID_ARG,
     "BQLColloqVexil: Failed to register session callbacks. Returned error code: 257", true},
    {"Activation", "ISessionManager::setPluginStatus", VEXIL_E_NOT_FOUND,
     "BQLColloqVexil: Failed to activate Colloq Plugin. Returned error code: 259", true},
    {"CallCommand", "ISession::getCallCommand", VEXIL_E_NOT_SUPPORTED,
     "BQLColloqVexil: Failed to get call command from session. Returned error code: 263", true},
    {"SessionManagerEvents", "ISessionManager::registerCallback", VEXIL_E_ALREADY_EXISTS,
     "BQLColloqVexil: Failed to register for session manager events. Returned error code: 260", true},
};

class RuntimeConnectionFailure : public PluginEndToEnd, public ::testing::WithParamInterface<ConnectStepFault> {};

TEST_P(RuntimeConnectionFailure, LogsTheStepAndGivesBackWhatItObtained) {
    const ConnectStepFault& step = GetParam();
    allowErrors();
    plugHeadset(0x0a1b, "SN1", "Model 5.1");
    ASSERT_EQ(vexilctl_inject_fault(step.fault, step.status, 1), VEXILCTL_OK);

    // The selector does not pass the handler's failure on.
    const uint64_t mark = clientMark();
    EXPECT_EQ(callInitialize(), 0);
    expectPluginLine(ACCESSORY_LOG_MILESTONE, "Connected to VexilRT successfully", mark);
    EXPECT_FALSE(hasPluginLine("Failed to connect to VexilRT", mark));
    expectLocalLog("ERROR", "connectToVexil", step.errorLine);

    const VexilCtlSession session = runtimeSession();
    EXPECT_EQ(session.registered, 0);
    EXPECT_EQ(session.callSubscriberCount, 0);
    int32_t subscribers = -1;
    EXPECT_EQ(vexilctl_manager_subscriber_count(&subscribers), VEXILCTL_OK);
    EXPECT_EQ(subscribers, 0);
    int32_t defaultSoftphone = -1;
    EXPECT_EQ(vexilctl_get_default_softphone(&defaultSoftphone), VEXILCTL_OK);
    EXPECT_EQ(defaultSoftphone, 0);
    EXPECT_EQ(runtimeRunning(), !step.givesRuntimeBack);

    // Nothing reaches the headset afterwards.
    chooseClientDevice("AppleUSBAudioEngine:Brimquell:Model 5_1");
    fireCall(CallbackSlot::OnIncoming, 27, clientstate::kRinging, "5550027", "Zed");
    uninitializePlugin();
    EXPECT_TRUE(runtimeCommands().empty());
    if (!step.givesRuntimeBack) {
        ShutDownVexilRuntime();  // what the plug-in left running, so the next test starts clean
    }
}

INSTANTIATE_TEST_SUITE_P(Steps, RuntimeConnectionFailure, ::testing::ValuesIn(kSteps),
                         [](const ::testing::TestParamInfo<ConnectStepFault>& step) { return step.param.name; });

}  // namespace
}  // namespace e2e
