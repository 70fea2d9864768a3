// The hub process failing the plug-in: its port taken by another process, or the hub killed in the
// middle of a call and started again.
#include <dirent.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "ChildProcess.h"
#include "HubModeFixture.h"

namespace e2e {
namespace {

constexpr const char* kHubProcessName = "Brimquell Hub";

// The hub simulator among this process's children, found by the name it gives itself; -1 when
// there is none.
pid_t childHubProcess() {
    std::unique_ptr<DIR, int (*)(DIR*)> processes(::opendir("/proc"), ::closedir);
    if (!processes) {
        return -1;
    }
    while (const dirent* entry = ::readdir(processes.get())) {
        const std::string pid = entry->d_name;
        if (pid.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        std::ifstream stat("/proc/" + pid + "/stat");
        std::string line;
        std::getline(stat, line);
        // "<pid> (<name>) <state> <parent pid> ..."; the name may hold blanks.
        const std::size_t open = line.find('(');
        const std::size_t close = line.rfind(')');
        if (open == std::string::npos || close == std::string::npos || close < open) {
            continue;
        }
        std::istringstream rest(line.substr(close + 1));
        std::string state;
        pid_t parent = 0;
        rest >> state >> parent;
        if (line.substr(open + 1, close - open - 1) == kHubProcessName && parent == ::getpid() && state != "Z") {
            return static_cast<pid_t>(std::stol(pid));
        }
    }
    return -1;
}

class HubProcessFault : public HubModeEndToEnd {
protected:
    std::size_t localLinesContaining(const std::string& text) const {
        std::istringstream lines(localLog());
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line);) {
            count += line.find(text) != std::string::npos ? 1 : 0;
        }
        return count;
    }
};

TEST_F(HubProcessFault, PluginPortOwnedByAnotherProcessSendsToTheHubButHearsNothingAndStopsCleanly) {
    ASSERT_TRUE(hub.start()) << "the hub simulator did not come up";
    const int checksBefore = hubChecks();
    ChildProcess holder(PORT_HOLDER_PATH, {"com.bqlhub.colloq"});
    ASSERT_TRUE(holder.started());
    const std::optional<std::string> answer = holder.ReadLine();
    ASSERT_EQ(answer.value_or("nothing"), "listening");

    ASSERT_NO_FATAL_FAILURE(initializePlugin());
    // The second check has ended once the first has chosen the proxy.
    ASSERT_TRUE(waitForHubChecks(checksBefore + 2)) << "no hub checks";
    ASSERT_NO_FATAL_FAILURE(chooseClientDevice(clientDeviceId(headset)));

    // Sends still reach the hub ...
    fireCall(CallbackSlot::OnIncoming, 71, clientstate::kRinging, "5550171", "Ivo");
    const HubRecord ring = expectReceivedMatching("incoming call", callRecord(hubcode::kIncoming, 71));
    EXPECT_EQ(ring.contactName, "Ivo");
    // ... but what the hub says goes to the port's owner.
    const uint64_t mark = clientMark();
    hubEvent("accept", 71);
    ASSERT_TRUE(hub.sentMatching([](const HubRecord& record) { return record.callState == 6; }, kWait));
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::AnswerCall, mark).empty()) << "the plug-in heard the hub through a taken port";
    EXPECT_EQ(localLinesContaining("pipe started (Colloq side)."), 1u) << localLog();

    uninitializePlugin();
    holder.CloseInput();
    const std::optional<int> status = holder.Wait();
    ASSERT_TRUE(status.has_value());
    EXPECT_TRUE(WIFEXITED(*status) && WEXITSTATUS(*status) == 0) << "the port's owner was disturbed";
}

TEST_F(HubProcessFault, HubKilledMidCallReconnectsOnceEachWayAndTheCallGoesOnThroughWhicheverHandlerServes) {
    ASSERT_NO_FATAL_FAILURE(waitUntilNoHubRuns());
    ASSERT_NO_FATAL_FAILURE(startInHubMode());
    const int32_t firstSession = runtimePluginId();
    connectCall(81, "5550181", "Jo");

    const pid_t hubPid = childHubProcess();
    ASSERT_GT(hubPid, 0) << "the hub simulator is not among this process's children";
    ASSERT_EQ(::kill(hubPid, SIGKILL), 0);
    EXPECT_FALSE(hub.stop()) << "a killed hub cannot end cleanly";  // reaps it

    // The hub's disappearance: one reconnect, after which the runtime carries the call.
    ASSERT_TRUE(waitUntil([&] { return runtimePluginId() == firstSession + 1; }, kWait))
        << "no reconnect after the hub was killed; plug-in id " << runtimePluginId();
    fireCall(CallbackSlot::OnHold, 81, clientstate::kHeld);
    const auto held = expectRuntimeCommands(VEXILCTL_CMD_HOLD_CALL, 1);
    ASSERT_EQ(held.size(), 1u);
    EXPECT_EQ(held[0].callId, 81);
    uint64_t mark = clientMark();
    press(headset, CALL_STATE_RESUME_CALL, 81);
    expectClientCall(HostCall::ResumeCall, headset.path, mark);

    // The hub's return: the pipe listens again and the hub carries the same call.
    ASSERT_TRUE(hub.start()) << "the hub simulator did not come back";
    ASSERT_TRUE(waitUntil([&] { return localLinesContaining("pipe started (Colloq side).") == 2; }, kWait))
        << "the plug-in did not listen again\n" << localLog();
    ASSERT_NO_FATAL_FAILURE(waitUntilProxyServes());
    fireCall(CallbackSlot::OnConnected, 81, clientstate::kConnected);
    expectReceivedMatching("resumed call", callRecord(hubcode::kResume, 81));
    mark = clientMark();
    hubEvent("terminate", 81);
    expectClientCall(HostCall::EndCall, headset.path, mark);

    // No reconnect when the hub appears, and no second one for the same disappearance.
    EXPECT_EQ(runtimePluginId(), firstSession + 1);
    EXPECT_EQ(localLinesContaining("pipe stoped (Colloq side)."), 1u) << localLog();
}

}  // namespace
}  // namespace e2e
