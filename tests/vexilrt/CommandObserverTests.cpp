// The command observer: told about each call command on the issuing thread, as the command log
// takes it, until it is removed.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "RuntimeFixture.h"
#include "vexilctl/VexilCommandObserver.h"

namespace vexiltest {
namespace {

struct Seen {
    std::vector<VexilCtlCommand> commands;
    std::vector<std::thread::id> threads;
    std::vector<int32_t> loggedAtTheTime;
};

void Record(const VexilCtlCommand* command, void* context) {
    auto* seen = static_cast<Seen*>(context);
    seen->commands.push_back(*command);
    seen->threads.push_back(std::this_thread::get_id());
    int32_t count = -1;
    vexilctl_command_count(&count);
    seen->loggedAtTheTime.push_back(count);
}

class CommandObserverTest : public RuntimeTest {
protected:
    void SetUp() override {
        RuntimeTest::SetUp();
        startWithSession();
    }
    void TearDown() override {
        vexilctl_set_command_observer(nullptr, nullptr);
        RuntimeTest::TearDown();
    }
};

TEST_F(CommandObserverTest, EachCommandIsSeenOnTheIssuingThreadOnceItIsLogged) {
    Seen seen;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_set_command_observer(&Record, &seen));
    FakeCall call(52);
    FakeContact contact(L"Ada", L"5550152");

    ASSERT_EQ(VEXIL_OK, callCommand()->incomingCall(&call, &contact, 0, 0));
    ASSERT_EQ(VEXIL_OK, callCommand()->terminateCall(&call));

    ASSERT_EQ(seen.commands.size(), 2u);
    EXPECT_EQ(seen.commands[0].command, VEXILCTL_CMD_INCOMING_CALL);
    EXPECT_EQ(seen.commands[0].callId, 52);
    EXPECT_STREQ(seen.commands[0].contactName, "Ada");
    EXPECT_EQ(seen.commands[1].command, VEXILCTL_CMD_TERMINATE_CALL);
    EXPECT_EQ(seen.threads[0], std::this_thread::get_id());
    EXPECT_EQ(seen.loggedAtTheTime, (std::vector<int32_t>{1, 2}));
}

TEST_F(CommandObserverTest, RemovedObserverIsToldNothingMore) {
    Seen seen;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_set_command_observer(&Record, &seen));
    FakeCall call(53);
    ASSERT_EQ(VEXIL_OK, callCommand()->incomingCall(&call, nullptr, 0, 0));

    ASSERT_EQ(VEXILCTL_OK, vexilctl_set_command_observer(nullptr, nullptr));
    ASSERT_EQ(VEXIL_OK, callCommand()->terminateCall(&call));

    EXPECT_EQ(seen.commands.size(), 1u);
}

}  // namespace
}  // namespace vexiltest
