// Only the plug-in's own user reaches its hub port: a process of another user cannot deliver a
// record, and a port folder open to others is refused, so that nothing is received or sent.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "HubModeFixture.h"
#include "RawHubRecords.h"
#include "StandInTools.h"

namespace e2e {
namespace {

constexpr uid_t kNobody = 65534;
constexpr gid_t kNoGroup = 65534;
constexpr int32_t kCall = 41;
constexpr const char* kFakeDevice = "processVexilEvent(EventPtr comeEvent): Fake device, ignore events!";

class PipeStranger : public HubModeEndToEnd {
protected:
    // Another user may pass through the test's folder, as through /tmp or /run/user, so that
    // only the port folder and the port itself stand in the way.
    void openTheTestFolder() { ASSERT_EQ(::chmod(folder.c_str(), 0711), 0) << std::strerror(errno); }

    std::string ports() const { return folder + "/ports"; }
    std::string pluginPort() const { return ports() + "/com.bqlhub.colloq"; }

    std::vector<unsigned char> acceptRecord() const {
        RawHubRecord record;
        record.callState = 6;
        record.callId = kCall;
        record.devicePath = headset.path;
        return encode(record);
    }

    void ringCall() { fireCall(CallbackSlot::OnIncoming, kCall, clientstate::kRinging, "5550141", "Ann Kay"); }

    // Waits until the worker has handled a record without a device that the hub sends now.
    void drainHub() {
        const uint64_t mark = clientMark();
        hubSays("accept call=-1 device=\"\"");
        expectPluginLine(ACCESSORY_LOG_MILESTONE, kFakeDevice, mark);
    }
};

// Setting another user's identity needs root; the test says so instead of passing unseen.
#define REQUIRE_ROOT() \
    ASSERT_EQ(::geteuid(), 0u) << "this test becomes user " << kNobody << " to send, which needs root"

TEST_F(PipeStranger, RecordFromAProcessOfAnotherUserNeverReachesThePlugin) {
    REQUIRE_ROOT();
    ASSERT_NO_FATAL_FAILURE(openTheTestFolder());
    ASSERT_NO_FATAL_FAILURE(startInHubMode());
    ringCall();
    expectReceivedMatching("incoming call", callRecord(hubcode::kIncoming, kCall));
    const uint64_t mark = clientMark();

    EXPECT_EQ(sendBlockAsUser(kNobody, kNoGroup, pluginPort(), acceptRecord()), EACCES);
    drainHub();
    EXPECT_TRUE(clientCallsOf(HostCall::AnswerCall, mark).empty()) << "another user's record was delivered";

    // The same record from the plug-in's own user is taken.
    ASSERT_EQ(sendBlock(pluginPort(), acceptRecord()), 0);
    expectClientCall(HostCall::AnswerCall, headset.path, mark);
}

TEST_F(PipeStranger, PortFolderOpenedToOthersWhileListeningStillKeepsAnotherUserOut) {
    REQUIRE_ROOT();
    ASSERT_NO_FATAL_FAILURE(openTheTestFolder());
    // A client started with an open umask would leave its port open to everybody.
    const mode_t savedMask = ::umask(0);
    startInHubMode();
    ::umask(savedMask);
    ASSERT_FALSE(HasFatalFailure());
    ringCall();
    expectReceivedMatching("incoming call", callRecord(hubcode::kIncoming, kCall));
    ASSERT_EQ(::chmod(ports().c_str(), 0777), 0);
    const uint64_t mark = clientMark();

    EXPECT_NE(sendBlockAsUser(kNobody, kNoGroup, pluginPort(), acceptRecord()), 0);
    drainHub();
    EXPECT_TRUE(clientCallsOf(HostCall::AnswerCall, mark).empty()) << "another user's record was delivered";
    ASSERT_EQ(::chmod(ports().c_str(), 0700), 0);
}

TEST_F(PipeStranger, PortFolderOpenToOthersIsRefusedSoNothingIsReceivedOrSent) {
    allowErrors();
    // No hub can run in such a folder; a stand-in ps makes the plug-in believe one does.
    ASSERT_EQ(::mkdir(ports().c_str(), 0700), 0) << std::strerror(errno);
    ASSERT_EQ(::chmod(ports().c_str(), 0777), 0);
    PortCatcher hubPort(ports() + "/com.bqlhub.hub");
    ASSERT_TRUE(hubPort.bound());
    StandInHubCheck standIn;
    ASSERT_TRUE(standIn.install(folder, StandInHubCheck::Ps::SaysTheHubRuns));

    initializePlugin();
    const bool checked = waitUntil([&] { return standIn.count() >= 2; }, kWait);
    chooseClientDevice(clientDeviceId(headset));
    ringCall();
    drainWorker();
    uninitializePlugin();
    standIn.uninstall();
    ASSERT_TRUE(checked) << "no hub checks ran";

    struct stat port {};
    EXPECT_NE(::lstat(pluginPort().c_str(), &port), 0) << "the plug-in listens in a folder open to others";
    EXPECT_EQ(hubPort.blocksWithin(std::chrono::milliseconds(100)), 0) << "the plug-in sent into a folder open to others";
    EXPECT_TRUE(clientCallsOf(HostCall::AnswerCall).empty());
    const std::string refusal = "port directory " + ports() + " refused: open to group or others (mode 0777)";
    EXPECT_NE(localLog().find(refusal), std::string::npos) << localLog();
    EXPECT_TRUE(runtimeCommandsOf(VEXILCTL_CMD_INCOMING_CALL).empty()) << "the call went to the runtime, not the proxy";
}

}  // namespace
}  // namespace e2e
