// Each call command that the runtime refuses: the handler logs the refusal with the runtime's
// status, the worker goes on, and the next call still reaches the headset.
#include <ostream>
#include <regex>
#include <sstream>
#include <string>

#include "PluginEndToEnd.h"
#include "vexilrt/Status.h"

namespace e2e {
namespace {

constexpr int32_t kCall = 41;
constexpr int32_t kNextCall = 42;

class CallCommandFault;

struct RefusedCommand {
    const char* name;      // the test's name for the command
    const char* fault;     // the runtime operation that refuses
    int32_t status;        // what it returns
    int32_t command;       // its kind in the runtime's command log
    const char* function;  // the handler operation that logs the refusal
    const char* stem;      // the start of that line, before the call's address
    // Brings the call to where the next client report issues the command, then arms the fault
    // and makes that report.
    void (*provoke)(CallCommandFault& test);
};

std::ostream& operator<<(std::ostream& out, const RefusedCommand& command) { return out << command.name; }

class CallCommandFault : public StartedWithOneHeadset, public ::testing::WithParamInterface<RefusedCommand> {
public:
    void arm() { ASSERT_EQ(vexilctl_inject_fault(GetParam().fault, GetParam().status, 1), VEXILCTL_OK); }
    void ring(int32_t id) { fireCall(CallbackSlot::OnIncoming, id, clientstate::kRinging, "5550141", "Ann Kay"); }
    void connect(int32_t id) { connectIncomingCall(id, "5550141", "Ann Kay"); }
    void report(CallbackSlot slot, int32_t clientState) { fireCall(slot, kCall, clientState, "5550141", "Ann Kay"); }
    void mute() { fireAudio(CallbackSlot::OnAudioMute); }

protected:
    // The local log's error lines of one operation.
    std::vector<std::string> errorLines(const std::string& function) const {
        return localLogMessages("ERROR", function);
    }

    std::size_t errorLineCount() const {
        std::istringstream lines(localLog());
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line);) {
            count += line.find(" ERROR ") != std::string::npos ? 1 : 0;
        }
        return count;
    }
};

// "<stem><address> Executing command returned error code: <status>", the address written as a
// pointer is written. The stems hold no pattern characters besides the blanks and colons.
bool isRefusalLine(const std::string& line, const std::string& stem, int32_t status) {
    return std::regex_match(line, std::regex(stem + "0x[0-9a-f]+ Executing command returned error code: " +
                                             std::to_string(status)));
}

const RefusedCommand kCommands[] = {
    {"Incoming", "ICallCommand::incomingCall", VEXIL_E_NOT_FOUND, VEXILCTL_CMD_INCOMING_CALL, "performIncomingCall",
     "BQLColloqVexil: Incoming Call: callID = ",
     [](CallCommandFault& test) {
         test.arm();
         test.ring(kCall);
     }},
    {"Outgoing", "ICallCommand::outgoingCall", VEXIL_E_INVALID_ARG, VEXILCTL_CMD_OUTGOING_CALL, "performOutgoingCall",
     "BQLColloqVexil: Outgoing Call: callID = ",
     [](CallCommandFault& test) {
         test.arm();
         test.report(CallbackSlot::OnRemoteAlerting, clientstate::kAlerting);
     }},
    {"Answered", "ICallCommand::answeredCall", VEXIL_E_NO_DEVICE, VEXILCTL_CMD_ANSWERED_CALL, "performAnsweredCall",
     "BQLColloqVexil: Answer Call: callID = ",
     [](CallCommandFault& test) {
         test.ring(kCall);
         test.arm();
         test.report(CallbackSlot::OnConnected, clientstate::kConnected);
     }},
    {"Terminate", "ICallCommand::terminateCall", VEXIL_E_NOT_SUPPORTED, VEXILCTL_CMD_TERMINATE_CALL,
     "performTerminateCall", "BQLColloqVexil: Terminate Call: callID = ",
     [](CallCommandFault& test) {
         test.connect(kCall);
         test.arm();
         test.report(CallbackSlot::OnOnHook, clientstate::kConnected);
     }},
    {"Hold", "ICallCommand::holdCall", 5, VEXILCTL_CMD_HOLD_CALL, "performHoldCall",
     "BQLColloqVexil: Hold Call: callID = ",
     [](CallCommandFault& test) {
         test.connect(kCall);
         test.arm();
         test.report(CallbackSlot::OnHold, clientstate::kHeld);
     }},
    {"Resume", "ICallCommand::resumeCall", VEXIL_E_REFUSED, VEXILCTL_CMD_RESUME_CALL, "performResumeCall",
     "BQLColloqVexil: Resume Call: callID = ",
     [](CallCommandFault& test) {
         test.connect(kCall);
         test.report(CallbackSlot::OnHold, clientstate::kHeld);
         test.arm();
         test.report(CallbackSlot::OnConnected, clientstate::kConnected);
     }},
    // A connected report of a call already connected announces it again.
    {"Insert", "ICallCommand::insertCall", VEXIL_E_ALREADY_EXISTS, VEXILCTL_CMD_INSERT_CALL, "performInsertCall",
     "BQLColloqVexil: Insert Call: callID = ",
     [](CallCommandFault& test) {
         test.connect(kCall);
         test.arm();
         test.report(CallbackSlot::OnConnected, clientstate::kConnected);
     }},
};

TEST_P(CallCommandFault, RefusedCommandIsLoggedWithTheStatusAndTheNextCallStillReachesTheHeadset) {
    const RefusedCommand& refused = GetParam();
    allowErrors();

    ASSERT_NO_FATAL_FAILURE(refused.provoke(*this));
    drainWorker();

    const std::vector<VexilCtlCommand> issued = runtimeCommandsOf(refused.command);
    ASSERT_FALSE(issued.empty()) << "the command never reached the runtime";
    EXPECT_EQ(issued.back().status, refused.status);
    EXPECT_EQ(issued.back().callId, kCall);
    const std::vector<std::string> lines = errorLines(refused.function);
    ASSERT_EQ(lines.size(), 1u) << localLog();
    EXPECT_TRUE(isRefusalLine(lines[0], refused.stem, refused.status)) << lines[0];
    EXPECT_EQ(errorLineCount(), 1u) << localLog();
    EXPECT_EQ(localLogMessages("INFO", refused.function).size() + 1, issued.size())
        << "every command but the refused one is logged as successful";

    // The worker goes on: the next call rings on the headset and is answered there.
    const std::size_t mark = runtimeMark();
    connect(kNextCall);
    const std::vector<VexilCtlCommand> later = runtimeCommandsSince(mark);
    ASSERT_GE(later.size(), 2u);
    EXPECT_EQ(later[0].command, VEXILCTL_CMD_INCOMING_CALL);
    EXPECT_EQ(later[0].status, 0);
    EXPECT_EQ(later[0].callId, kNextCall);
    EXPECT_EQ(headsetCallState(kNextCall), VEXILCTL_CALL_ACTIVE);
    EXPECT_EQ(errorLineCount(), 1u) << localLog();
}

INSTANTIATE_TEST_SUITE_P(Commands, CallCommandFault, ::testing::ValuesIn(kCommands),
                         [](const ::testing::TestParamInfo<RefusedCommand>& command) { return command.param.name; });

class MuteCommandFault : public CallCommandFault {};

TEST_F(MuteCommandFault, RefusedMuteIsLoggedWithTheFlagAndTheStatusAndUnmuteStillReachesTheHeadset) {
    allowErrors();
    connect(kCall);
    ASSERT_EQ(vexilctl_inject_fault("ICallCommand::setMute", VEXIL_E_NOT_FOUND, 1), VEXILCTL_OK);

    mute();
    drainWorker();

    const std::vector<VexilCtlCommand> mutes = runtimeCommandsOf(VEXILCTL_CMD_SET_MUTE);
    ASSERT_EQ(mutes.size(), 1u);
    EXPECT_EQ(mutes[0].status, VEXIL_E_NOT_FOUND);
    EXPECT_EQ(mutes[0].mute, 1);
    EXPECT_EQ(localLogMessages("ERROR", "performMuteCall"),
              std::vector<std::string>{"BQLColloqVexil: Mute Call: mute = true Executing command returned error code: 259"});
    int32_t muted = -1;
    ASSERT_EQ(vexilctl_get_mute(&muted), VEXILCTL_OK);
    EXPECT_EQ(muted, 0);

    fireAudio(CallbackSlot::OnAudioUnmute);
    const std::vector<VexilCtlCommand> after = expectRuntimeCommands(VEXILCTL_CMD_SET_MUTE, 2);
    ASSERT_EQ(after.size(), 2u);
    EXPECT_EQ(after[1].status, 0);
    EXPECT_EQ(after[1].mute, 0);
    EXPECT_EQ(localLogMessages("INFO", "performMuteCall"),
              std::vector<std::string>{"BQLColloqVexil: Mute Call: mute = false Successful"});
}

}  // namespace
}  // namespace e2e
