// Call commands of the direct handler as the runtime receives them, and their log lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <sstream>
#include <string>

#include "DirectHandlerFixture.h"
#include "calls/BQLColloqCall.h"
#include "vexilctl/VexilControl.h"

namespace {

using bqltest::LocalLogEntry;
using ::testing::IsEmpty;

// One call as the client reported it, with the plug-in's own contact.
class ClientCall {
public:
    ClientCall(int id, const char* number, const char* name)
        : record_(makeRecord(id, number, name)), contact_(&record_), call_(&record_, BQL_CALL_INCOMING, contact_) {}

    ICall* call() { return &call_; }
    IContact* contact() { return call_.getContact().get(); }
    // How the log names the call: its address, not its id.
    std::string pointerText() {
        std::ostringstream text;
        text << static_cast<const void*>(call());
        return text.str();
    }

private:
    static Accessory_CallInfo_v1_0_t makeRecord(int id, const char* number, const char* name) {
        Accessory_CallInfo_v1_0_t record;
        std::memset(&record, 0, sizeof record);
        record.callId = id;
        std::strncpy(record.number, number, sizeof record.number - 1);
        std::strncpy(record.displayName, name, sizeof record.displayName - 1);
        return record;
    }

    Accessory_CallInfo_v1_0_t record_;
    BQLColloqContact contact_;
    BQLColloqCall call_;
};

class VexilCallCommands : public DirectHandlerTest {
protected:
    void connectWithHeadset() {
        plug(0x1a2b, "A1", "Model 5", false);
        ASSERT_EQ(handler().connectToVexil(&queue), 0);
    }

    static std::vector<VexilCtlCommand> commands() {
        int32_t count = 0;
        EXPECT_EQ(vexilctl_command_count(&count), VEXILCTL_OK);
        std::vector<VexilCtlCommand> entries(static_cast<std::size_t>(count));
        for (int32_t index = 0; index < count; ++index) {
            EXPECT_EQ(vexilctl_command_at(index, &entries[static_cast<std::size_t>(index)]), VEXILCTL_OK);
        }
        return entries;
    }

    static int32_t headsetCallState(int32_t callId) {
        int32_t state = 0;
        EXPECT_EQ(vexilctl_get_call_state(callId, &state), VEXILCTL_OK);
        return state;
    }

    ClientCall first{12, "5551234", "Ann Smith"};
};

LocalLogEntry success(const char* function, const std::string& message) { return {"INFO", function, message}; }
LocalLogEntry failure(const char* function, const std::string& message) { return {"ERROR", function, message}; }

struct CommandCase {
    const char* function;
    const char* nullMessage;
    std::function<bool(BQLColloqVexil&, ICall*, IContact*)> issue;
};

const CommandCase kEveryCommand[] = {
    {"performIncomingCall", "BQLColloqVexil: Failed to perform Incoming Call: NULL",
     [](BQLColloqVexil& h, ICall* call, IContact* contact) { return h.performIncomingCall(call, contact); }},
    {"performOutgoingCall", "BQLColloqVexil: Failed to perform Outgoing Call: NULL",
     [](BQLColloqVexil& h, ICall* call, IContact* contact) { return h.performOutgoingCall(call, contact); }},
    {"performTerminateCall", "BQLColloqVexil: Failed to perform Terminate Call: NULL",
     [](BQLColloqVexil& h, ICall* call, IContact*) { return h.performTerminateCall(call); }},
    {"performAnsweredCall", "BQLColloqVexil: Failed to perform Answer Call: NULL",
     [](BQLColloqVexil& h, ICall* call, IContact*) { return h.performAnsweredCall(call); }},
    {"performHoldCall", "BQLColloqVexil: Failed to perform Hold Call: NULL",
     [](BQLColloqVexil& h, ICall* call, IContact*) { return h.performHoldCall(call); }},
    {"performResumeCall", "BQLColloqVexil: Failed to perform Resume Call: NULL",
     [](BQLColloqVexil& h, ICall* call, IContact*) { return h.performResumeCall(call); }},
    {"performInsertCall", "BQLColloqVexil: Failed to perform Insert Call: NULL",
     [](BQLColloqVexil& h, ICall* call, IContact* contact) { return h.performInsertCall(call, contact); }},
    {"performMuteCall", "BQLColloqVexil: Failed to perform Mute Call: NULL",
     [](BQLColloqVexil& h, ICall*, IContact*) { return h.performMuteCall(true); }},
};

TEST_F(VexilCallCommands, EveryCommandBeforeConnectLogsItsNullMessageAndReachesNoRuntime) {
    for (const CommandCase& command : kEveryCommand) {
        SCOPED_TRACE(command.function);
        const std::size_t linesBefore = log.entries().size();
        EXPECT_FALSE(command.issue(handler(), first.call(), first.contact()));
        const std::vector<LocalLogEntry> lines = log.entries();
        ASSERT_EQ(lines.size(), linesBefore + 1);
        EXPECT_EQ(lines.back(), failure(command.function, command.nullMessage));
    }
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VexilCallCommands, EveryCommandTakingACallLogsItsNullMessageForANullCall) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    for (const CommandCase& command : kEveryCommand) {
        if (std::string(command.function) == "performMuteCall") {
            continue;  // takes no call
        }
        SCOPED_TRACE(command.function);
        EXPECT_FALSE(command.issue(handler(), nullptr, first.contact()));
        EXPECT_EQ(log.entries().back(), failure(command.function, command.nullMessage));
    }
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VexilCallCommands, IncomingCallReachesTheRuntimeWithCallIdContactAndTwoZeros) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    EXPECT_TRUE(handler().performIncomingCall(first.call(), first.contact()));

    const std::vector<VexilCtlCommand> sent = commands();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].command, VEXILCTL_CMD_INCOMING_CALL);
    EXPECT_EQ(sent[0].status, 0);
    EXPECT_EQ(sent[0].callId, 12);
    EXPECT_EQ(sent[0].hasContact, 1);
    EXPECT_STREQ(sent[0].contactName, "Ann Smith");
    EXPECT_STREQ(sent[0].contactPhone, "5551234");
    EXPECT_EQ(sent[0].arg1, 0);
    EXPECT_EQ(sent[0].arg2, 0);
    EXPECT_EQ(log.entries().back(), success("performIncomingCall", "BQLColloqVexil: Incoming Call: callID = " +
                                                                       first.pointerText() + " Successful"));
}

TEST_F(VexilCallCommands, CallIsNamedInTheLogByItsAddressInHexadecimal) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    ASSERT_TRUE(handler().performIncomingCall(first.call(), first.contact()));
    EXPECT_THAT(log.entries().back().message,
                ::testing::MatchesRegex("BQLColloqVexil: Incoming Call: callID = 0x[0-9a-f]+ Successful"));
}

TEST_F(VexilCallCommands, IncomingCallWithoutContactIsStillIssued) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    EXPECT_TRUE(handler().performIncomingCall(first.call(), nullptr));
    const std::vector<VexilCtlCommand> sent = commands();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].command, VEXILCTL_CMD_INCOMING_CALL);
    EXPECT_EQ(sent[0].callId, 12);
    EXPECT_EQ(sent[0].hasContact, 0);
}

TEST_F(VexilCallCommands, OutgoingCallReachesTheRuntimeWithCallIdContactAndAZero) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    ClientCall dialled(31, "5559876", "Bob Jones");
    EXPECT_TRUE(handler().performOutgoingCall(dialled.call(), dialled.contact()));

    const std::vector<VexilCtlCommand> sent = commands();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].command, VEXILCTL_CMD_OUTGOING_CALL);
    EXPECT_EQ(sent[0].callId, 31);
    EXPECT_STREQ(sent[0].contactName, "Bob Jones");
    EXPECT_STREQ(sent[0].contactPhone, "5559876");
    EXPECT_EQ(sent[0].arg1, 0);
    EXPECT_EQ(log.entries().back(), success("performOutgoingCall", "BQLColloqVexil: Outgoing Call: callID = " +
                                                                       dialled.pointerText() + " Successful"));
}

struct CallOnlyCommand {
    const char* function;
    const char* stem;
    int32_t kind;
    bool (BQLColloqVexil::*issue)(ICall*);
};

TEST_F(VexilCallCommands, TerminateAnswerHoldAndResumeReachTheRuntimeWithTheCallId) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    const CallOnlyCommand cases[] = {
        {"performAnsweredCall", "BQLColloqVexil: Answer Call: callID = ", VEXILCTL_CMD_ANSWERED_CALL,
         &BQLColloqVexil::performAnsweredCall},
        {"performHoldCall", "BQLColloqVexil: Hold Call: callID = ", VEXILCTL_CMD_HOLD_CALL,
         &BQLColloqVexil::performHoldCall},
        {"performResumeCall", "BQLColloqVexil: Resume Call: callID = ", VEXILCTL_CMD_RESUME_CALL,
         &BQLColloqVexil::performResumeCall},
        {"performTerminateCall", "BQLColloqVexil: Terminate Call: callID = ", VEXILCTL_CMD_TERMINATE_CALL,
         &BQLColloqVexil::performTerminateCall},
    };
    for (const CallOnlyCommand& command : cases) {
        SCOPED_TRACE(command.function);
        ASSERT_EQ(vexilctl_clear_commands(), VEXILCTL_OK);
        EXPECT_TRUE((handler().*command.issue)(first.call()));
        const std::vector<VexilCtlCommand> sent = commands();
        ASSERT_EQ(sent.size(), 1u);
        EXPECT_EQ(sent[0].command, command.kind);
        EXPECT_EQ(sent[0].status, 0);
        EXPECT_EQ(sent[0].callId, 12);
        EXPECT_EQ(log.entries().back(), success(command.function, command.stem + first.pointerText() + " Successful"));
    }
}

TEST_F(VexilCallCommands, CommandsMoveTheHeadsetThroughTheCallsStates) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    ASSERT_TRUE(handler().performIncomingCall(first.call(), first.contact()));
    EXPECT_EQ(headsetCallState(12), VEXILCTL_CALL_RINGING);
    ASSERT_TRUE(handler().performAnsweredCall(first.call()));
    EXPECT_EQ(headsetCallState(12), VEXILCTL_CALL_ACTIVE);
    ASSERT_TRUE(handler().performHoldCall(first.call()));
    EXPECT_EQ(headsetCallState(12), VEXILCTL_CALL_HELD);
    ASSERT_TRUE(handler().performResumeCall(first.call()));
    EXPECT_EQ(headsetCallState(12), VEXILCTL_CALL_ACTIVE);
    ASSERT_TRUE(handler().performTerminateCall(first.call()));
    EXPECT_EQ(headsetCallState(12), VEXILCTL_CALL_ENDED);
}

TEST_F(VexilCallCommands, InsertCallReachesTheRuntimeWithCallIdAndContact) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    EXPECT_TRUE(handler().performInsertCall(first.call(), first.contact()));

    const std::vector<VexilCtlCommand> sent = commands();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].command, VEXILCTL_CMD_INSERT_CALL);
    EXPECT_EQ(sent[0].callId, 12);
    EXPECT_STREQ(sent[0].contactName, "Ann Smith");
    EXPECT_STREQ(sent[0].contactPhone, "5551234");
    EXPECT_EQ(headsetCallState(12), VEXILCTL_CALL_ACTIVE);
    EXPECT_EQ(
        log.entries().back(),
        success("performInsertCall", "BQLColloqVexil: Insert Call: callID = " + first.pointerText() + " Successful"));
}

TEST_F(VexilCallCommands, InsertCallWithoutContactLogsItsNullMessageAndReturnsFalse) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    EXPECT_FALSE(handler().performInsertCall(first.call(), nullptr));
    EXPECT_EQ(log.entries().back(),
              failure("performInsertCall", "BQLColloqVexil: Failed to perform Insert Call: NULL"));
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VexilCallCommands, HoldRefusedWithStatus5LogsTheErrorCodeAndReturnsFalse) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    ASSERT_EQ(vexilctl_inject_fault("ICallCommand::holdCall", 5, 1), VEXILCTL_OK);
    EXPECT_FALSE(handler().performHoldCall(first.call()));
    EXPECT_EQ(log.entries().back(),
              failure("performHoldCall", "BQLColloqVexil: Hold Call: callID = " + first.pointerText() +
                                             " Executing command returned error code: 5"));
}

TEST_F(VexilCallCommands, MuteOnReachesTheRuntimeAndLogsTheWordTrue) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    EXPECT_TRUE(handler().performMuteCall(true));

    const std::vector<VexilCtlCommand> sent = commands();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].command, VEXILCTL_CMD_SET_MUTE);
    EXPECT_EQ(sent[0].mute, 1);
    int32_t muted = 0;
    ASSERT_EQ(vexilctl_get_mute(&muted), VEXILCTL_OK);
    EXPECT_EQ(muted, 1);
    EXPECT_EQ(log.entries().back(), success("performMuteCall", "BQLColloqVexil: Mute Call: mute = true Successful"));
}

TEST_F(VexilCallCommands, MuteOffLogsTheWordFalseDirectlyBeforeSuccessful) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    EXPECT_TRUE(handler().performMuteCall(false));
    const std::vector<VexilCtlCommand> sent = commands();
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].mute, 0);
    EXPECT_EQ(log.entries().back(), success("performMuteCall", "BQLColloqVexil: Mute Call: mute = false Successful"));
}

TEST_F(VexilCallCommands, MuteRefusedLogsTheWordAndTheErrorCode) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    ASSERT_EQ(vexilctl_inject_fault("ICallCommand::setMute", 7, 1), VEXILCTL_OK);
    EXPECT_FALSE(handler().performMuteCall(true));
    EXPECT_EQ(log.entries().back(), failure("performMuteCall",
                                            "BQLColloqVexil: Mute Call: mute = true Executing command returned "
                                            "error code: 7"));
}

TEST_F(VexilCallCommands, CommandsAfterDisconnectLogTheirNullMessage) {
    ASSERT_NO_FATAL_FAILURE(connectWithHeadset());
    ASSERT_EQ(handler().disconnectFromVexil(), 0);
    EXPECT_FALSE(handler().performAnsweredCall(first.call()));
    EXPECT_EQ(log.entries().back(),
              failure("performAnsweredCall", "BQLColloqVexil: Failed to perform Answer Call: NULL"));
    EXPECT_THAT(commands(), IsEmpty());
}

}  // namespace
