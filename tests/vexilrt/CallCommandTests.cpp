// Call commands: what the runtime reads through the softphone's call and contact, the command
// log, and the headset call state they drive.
#include <gtest/gtest.h>

#include <string>

#include "RuntimeFixture.h"

namespace vexiltest {
namespace {

class CallCommandTest : public RuntimeTest {
protected:
    void SetUp() override {
        RuntimeTest::SetUp();
        startWithSession();
    }
};

VexilCtlCommand lastCommand() {
    int32_t count = 0;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_command_count(&count));
    VexilCtlCommand command{};
    EXPECT_EQ(VEXILCTL_OK, vexilctl_command_at(count - 1, &command));
    return command;
}

int32_t commandCount() {
    int32_t count = -1;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_command_count(&count));
    return count;
}

int32_t callState(int32_t callId) {
    int32_t state = 0;
    EXPECT_EQ(VEXILCTL_OK, vexilctl_get_call_state(callId, &state));
    return state;
}

TEST_F(CallCommandTest, IncomingCallIsReadThroughTheCallAndContactInterfaces) {
    FakeCall call(41);
    FakeContact contact(L"Zoë Ångström", L"+46 8 123 456");
    ASSERT_EQ(VEXIL_OK, callCommand()->incomingCall(&call, &contact, 0, 0));
    const VexilCtlCommand command = lastCommand();
    EXPECT_EQ(VEXILCTL_CMD_INCOMING_CALL, command.command);
    EXPECT_EQ(VEXIL_OK, command.status);
    EXPECT_EQ(1, command.hasCall);
    EXPECT_EQ(41, command.callId);
    EXPECT_EQ(1, command.hasContact);
    EXPECT_STREQ("Zoë Ångström", command.contactName);
    EXPECT_STREQ("+46 8 123 456", command.contactPhone);
    EXPECT_EQ(0, command.arg1);
    EXPECT_EQ(0, command.arg2);
    EXPECT_EQ(VEXILCTL_CALL_RINGING, callState(41));
}

TEST_F(CallCommandTest, IncomingCallKeepsItsIntArguments) {
    FakeCall call(1);
    ASSERT_EQ(VEXIL_OK, callCommand()->incomingCall(&call, nullptr, 7, -3));
    const VexilCtlCommand command = lastCommand();
    EXPECT_EQ(7, command.arg1);
    EXPECT_EQ(-3, command.arg2);
    EXPECT_EQ(0, command.hasContact);
    EXPECT_STREQ("", command.contactName);
}

TEST_F(CallCommandTest, OutgoingCallIsLoggedAndShownAsOutgoing) {
    FakeCall call(42);
    FakeContact contact(L"Desk", L"100");
    ASSERT_EQ(VEXIL_OK, callCommand()->outgoingCall(&call, &contact, 5));
    const VexilCtlCommand command = lastCommand();
    EXPECT_EQ(VEXILCTL_CMD_OUTGOING_CALL, command.command);
    EXPECT_EQ(42, command.callId);
    EXPECT_EQ(5, command.arg1);
    EXPECT_STREQ("100", command.contactPhone);
    EXPECT_EQ(VEXILCTL_CALL_OUTGOING, callState(42));
}

TEST_F(CallCommandTest, ACallGoesThroughAnswerHoldResumeAndEnd) {
    FakeCall call(43);
    ICallCommand* command = callCommand();
    ASSERT_EQ(VEXIL_OK, command->incomingCall(&call, nullptr, 0, 0));
    ASSERT_EQ(VEXIL_OK, command->answeredCall(&call));
    EXPECT_EQ(VEXILCTL_CALL_ACTIVE, callState(43));
    ASSERT_EQ(VEXIL_OK, command->holdCall(&call));
    EXPECT_EQ(VEXILCTL_CALL_HELD, callState(43));
    ASSERT_EQ(VEXIL_OK, command->resumeCall(&call));
    EXPECT_EQ(VEXILCTL_CALL_ACTIVE, callState(43));
    ASSERT_EQ(VEXIL_OK, command->terminateCall(&call));
    EXPECT_EQ(VEXILCTL_CALL_ENDED, callState(43));

    const int expected[] = {VEXILCTL_CMD_INCOMING_CALL, VEXILCTL_CMD_ANSWERED_CALL, VEXILCTL_CMD_HOLD_CALL,
                            VEXILCTL_CMD_RESUME_CALL, VEXILCTL_CMD_TERMINATE_CALL};
    ASSERT_EQ(5, commandCount());
    for (int32_t i = 0; i < 5; ++i) {
        VexilCtlCommand logged{};
        ASSERT_EQ(VEXILCTL_OK, vexilctl_command_at(i, &logged));
        EXPECT_EQ(expected[i], logged.command);
        EXPECT_EQ(43, logged.callId);
    }
}

TEST_F(CallCommandTest, InsertCallShowsACallInProgressAndAcceptsNoContact) {
    FakeCall call(44);
    ASSERT_EQ(VEXIL_OK, callCommand()->insertCall(&call, nullptr));
    EXPECT_EQ(VEXILCTL_CMD_INSERT_CALL, lastCommand().command);
    EXPECT_EQ(0, lastCommand().hasContact);
    EXPECT_EQ(VEXILCTL_CALL_ACTIVE, callState(44));
}

TEST_F(CallCommandTest, SetMuteRecordsTheFlag) {
    int32_t muted = -1;
    ASSERT_EQ(VEXIL_OK, callCommand()->setMute(true));
    EXPECT_EQ(1, lastCommand().mute);
    EXPECT_EQ(0, lastCommand().hasCall);
    ASSERT_EQ(VEXILCTL_OK, vexilctl_get_mute(&muted));
    EXPECT_EQ(1, muted);
    ASSERT_EQ(VEXIL_OK, callCommand()->setMute(false));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_get_mute(&muted));
    EXPECT_EQ(0, muted);
}

TEST_F(CallCommandTest, ANullCallIsRefusedAndStillLogged) {
    ICallCommand* command = callCommand();
    FakeContact contact(L"N", L"1");
    EXPECT_EQ(VEXIL_E_INVALID_ARG, command->incomingCall(nullptr, &contact, 0, 0));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, command->outgoingCall(nullptr, nullptr, 0));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, command->terminateCall(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, command->answeredCall(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, command->holdCall(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, command->resumeCall(nullptr));
    EXPECT_EQ(VEXIL_E_INVALID_ARG, command->insertCall(nullptr, &contact));
    ASSERT_EQ(7, commandCount());
    const VexilCtlCommand first = [] {
        VexilCtlCommand logged{};
        EXPECT_EQ(VEXILCTL_OK, vexilctl_command_at(0, &logged));
        return logged;
    }();
    EXPECT_EQ(0, first.hasCall);
    EXPECT_EQ(VEXIL_E_INVALID_ARG, first.status);
    EXPECT_STREQ("N", first.contactName);
}

TEST_F(CallCommandTest, CommandsWithoutTheirSessionFail) {
    ICallCommand* command = callCommand();
    ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session_.get()));
    FakeCall call(45);
    EXPECT_EQ(VEXIL_E_NOT_FOUND, command->holdCall(&call));
    EXPECT_EQ(VEXIL_E_NOT_FOUND, command->setMute(true));
    EXPECT_EQ(VEXIL_E_NOT_FOUND, lastCommand().status);
    int32_t state = 0;
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_get_call_state(45, &state));
}

TEST_F(CallCommandTest, ACommandOfAnEarlierSessionDoesNotReachALaterOne) {
    ICallCommand* command = callCommand();
    ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session_.get()));
    ISession* later = nullptr;
    ASSERT_EQ(VEXIL_OK, managerInt_->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE, &later));
    bql::ReleasingPtr<ISession> held(later);
    FakeCall call(46);
    EXPECT_EQ(VEXIL_E_NOT_FOUND, command->answeredCall(&call));
}

TEST_F(CallCommandTest, LongContactTextsAreCutAtACharacterBoundary) {
    FakeCall call(47);
    const std::wstring longName(300, L'é');
    FakeContact contact(longName, L"1");
    ASSERT_EQ(VEXIL_OK, callCommand()->incomingCall(&call, &contact, 0, 0));
    const VexilCtlCommand command = lastCommand();
    const std::string name = command.contactName;
    EXPECT_EQ(254u, name.size());
    EXPECT_EQ(std::wstring(127, L'é'), wide(name));
}

TEST_F(CallCommandTest, TheCommandLogClearsAndRejectsBadIndexes) {
    FakeCall call(48);
    ASSERT_EQ(VEXIL_OK, callCommand()->answeredCall(&call));
    VexilCtlCommand command{};
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_command_at(1, &command));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_command_at(-1, &command));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_command_at(0, nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_command_count(nullptr));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_clear_commands());
    EXPECT_EQ(0, commandCount());
}

TEST_F(CallCommandTest, AFullCommandLogDropsItsOldestEntries) {
    ICallCommand* command = callCommand();
    for (int id = 0; id <= VEXILCTL_COMMAND_LOG_CAPACITY; ++id) {
        FakeCall call(id);
        ASSERT_EQ(VEXIL_OK, command->answeredCall(&call));
    }
    EXPECT_EQ(VEXILCTL_COMMAND_LOG_CAPACITY, commandCount());
    VexilCtlCommand oldest{};
    ASSERT_EQ(VEXILCTL_OK, vexilctl_command_at(0, &oldest));
    EXPECT_EQ(1, oldest.callId);
}

TEST_F(CallCommandTest, UnknownCallsHaveNoHeadsetState) {
    int32_t state = 0;
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_get_call_state(999, &state));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_get_call_state(1, nullptr));
}

}  // namespace
}  // namespace vexiltest
