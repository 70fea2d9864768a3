#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "BlockInbox.h"
#include "ForeignDirectory.h"
#include "NamedPipe.h"
#include "ReceiverThreads.h"
#include "StuckPort.h"
#include "bqltest/LocalLog.h"
#include "bqltest/ScopedEnvironment.h"
#include "bqltest/TempDirectory.h"
#include "hubproxy/CClientPipe.h"
#include "hubproxy/PipeNames.h"

namespace {

using namespace std::chrono_literals;

std::function<int(unsigned char*, int)> Into(BlockInbox& inbox) {
    return [&inbox](unsigned char* data, int length) {
        inbox.put(Block(data, data + length));
        return 0;
    };
}

// A socket file with nobody behind it, as a receiver that died leaves it.
bool LeaveAbandonedSocketFile(const std::string& path) {
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const bool bound = ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return bound;
}

bool Exists(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

class PipeTest : public ::testing::Test {
protected:
    std::string PortPath(const std::string& name) const { return ports / name; }

    bqltest::TempDirectory ports;
    bqltest::ScopedEnvironment portDirectory{"BQL_PORT_DIR", ports.path()};
};

TEST_F(PipeTest, SendReachesTheReceiverOfTheRemotePort) {
    BlockInbox atHub;
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    hub.StartPipe();
    CClientPipe client(L"\\\\.\\pipe\\bql_colloq_pipe", [](unsigned char*, int) { return 0; }, nullptr, 5);
    unsigned char message[] = {1, 2, 3, 250};

    client.Send(message, sizeof message);

    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(atHub.items()[0], (Block{1, 2, 3, 250}));
    hub.StopPipe();
}

TEST_F(PipeTest, ClientListensOnTheColloqPortAndSendsToTheHubPort) {
    BlockInbox atClient;
    BlockInbox atHub;
    CClientPipe client(L"name", Into(atClient), nullptr, 5);
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    client.StartPipe();
    hub.StartPipe();
    unsigned char toClient[] = {7};
    unsigned char toHub[] = {8};

    hub.Send(toClient, 1);
    client.Send(toHub, 1);

    ASSERT_TRUE(atClient.waitFor(1));
    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(atClient.items()[0], Block{7});
    EXPECT_EQ(atHub.items()[0], Block{8});
    EXPECT_TRUE(Exists(PortPath("com.bqlhub.colloq")));
    client.StopPipe();
    hub.StopPipe();
}

TEST_F(PipeTest, BlocksOfAnyLengthArriveWithThatLengthIncludingZero) {
    BlockInbox atHub;
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    hub.StartPipe();
    NamedPipe sender("com.bqlhub.sender", MAC_PIPE_HUB_SIDE_, nullptr);
    Block big(5000);
    for (std::size_t at = 0; at < big.size(); ++at) {
        big[at] = static_cast<unsigned char>(at * 7);
    }
    unsigned char one = 42;

    sender.Send(nullptr, 0);
    sender.Send(&one, 1);
    sender.Send(big.data(), static_cast<int>(big.size()));

    ASSERT_TRUE(atHub.waitFor(3));
    const auto blocks = atHub.items();
    EXPECT_EQ(blocks[0].size(), 0u);
    EXPECT_EQ(blocks[1], Block{42});
    EXPECT_EQ(blocks[2], big);
    hub.StopPipe();
}

TEST_F(PipeTest, StartPipeTwiceKeepsOneReceiverAndOnePort) {
    BlockInbox atClient;
    CClientPipe client(L"name", Into(atClient), nullptr, 5);
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, nullptr);

    client.StartPipe();
    client.StartPipe();

    EXPECT_TRUE(client.IsListening());
    EXPECT_EQ(SettledReceiverThreadCount(1), 1);
    unsigned char first = 1, second = 2;
    hub.Send(&first, 1);
    hub.Send(&second, 1);
    ASSERT_TRUE(atClient.waitFor(2));
    EXPECT_EQ(atClient.items(), (std::vector<Block>{Block{1}, Block{2}}));
    client.StopPipe();
}

TEST_F(PipeTest, StopPipeOnANeverStartedPipeDoesNothing) {
    CClientPipe client(L"name", nullptr, nullptr, 5);

    client.StopPipe();

    EXPECT_FALSE(client.IsListening());
    EXPECT_EQ(SettledReceiverThreadCount(0), 0);
    EXPECT_FALSE(Exists(PortPath("com.bqlhub.colloq")));
}

TEST_F(PipeTest, StopPipeJoinsTheReceiverAndReleasesThePort) {
    CClientPipe client(L"name", nullptr, nullptr, 5);
    client.StartPipe();
    ASSERT_TRUE(Exists(PortPath("com.bqlhub.colloq")));

    client.StopPipe();
    client.StopPipe();

    EXPECT_FALSE(client.IsListening());
    EXPECT_EQ(SettledReceiverThreadCount(0), 0);
    EXPECT_FALSE(Exists(PortPath("com.bqlhub.colloq")));
}

// The stop comes while the receiver may not have begun to wait for messages yet.
TEST_F(PipeTest, StopRightAfterEachStartEndsTheReceiverEveryTime) {
    CClientPipe client(L"name", nullptr, nullptr, 5);
    for (int round = 0; round < 200; ++round) {
        client.StartPipe();
        client.StopPipe();
        ASSERT_EQ(SettledReceiverThreadCount(0), 0) << "round " << round;
    }
    EXPECT_FALSE(client.IsListening());
}

TEST_F(PipeTest, PipeDestroyedWhileListeningStopsItsReceiver) {
    {
        CClientPipe client(L"name", nullptr, nullptr, 5);
        client.StartPipe();
        ASSERT_EQ(SettledReceiverThreadCount(1), 1);
    }

    EXPECT_EQ(SettledReceiverThreadCount(0), 0);
    EXPECT_FALSE(Exists(PortPath("com.bqlhub.colloq")));
}

TEST_F(PipeTest, RestartedPipeReceivesAgain) {
    BlockInbox atClient;
    CClientPipe client(L"name", Into(atClient), nullptr, 5);
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, nullptr);
    client.StartPipe();
    client.StopPipe();

    client.StartPipe();
    unsigned char message = 9;
    hub.Send(&message, 1);

    ASSERT_TRUE(atClient.waitFor(1));
    EXPECT_EQ(atClient.items()[0], Block{9});
    client.StopPipe();
}

TEST_F(PipeTest, SendWhileTheHubIsNotRunningReturnsAndDropsTheMessage) {
    CClientPipe client(L"name", nullptr, nullptr, 5);
    unsigned char message[] = {1, 2, 3};

    client.Send(message, sizeof message);

    EXPECT_FALSE(Exists(PortPath("com.bqlhub.hub")));
    BlockInbox atHub;
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    hub.StartPipe();
    unsigned char marker[] = {4};
    client.Send(marker, sizeof marker);
    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(atHub.items(), std::vector<Block>{Block{4}}) << "the dropped message came back";
    hub.StopPipe();
}

TEST_F(PipeTest, SendToAHubPortWithoutReceiverReturnsAndDropsTheMessage) {
    ASSERT_TRUE(LeaveAbandonedSocketFile(PortPath("com.bqlhub.hub")));
    CClientPipe client(L"name", nullptr, nullptr, 5);
    unsigned char message[] = {1};

    client.Send(message, sizeof message);

    BlockInbox atHub;
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    hub.StartPipe();
    unsigned char marker[] = {2};
    client.Send(marker, sizeof marker);
    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(atHub.items(), std::vector<Block>{Block{2}}) << "the dropped message came back";
    hub.StopPipe();
}

TEST_F(PipeTest, BadSendArgumentsAreIgnored) {
    BlockInbox atHub;
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    hub.StartPipe();
    CClientPipe client(L"name", nullptr, nullptr, 5);
    unsigned char marker = 3;

    client.Send(nullptr, 4);
    client.Send(&marker, -1);
    client.Send(&marker, 1);

    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(atHub.items(), std::vector<Block>{Block{3}});
    hub.StopPipe();
}

TEST_F(PipeTest, SecondOwnerOfTheLocalPortCannotListenButStillSends) {
    BlockInbox atFirst;
    BlockInbox atSecond;
    BlockInbox atHub;
    CClientPipe first(L"name", Into(atFirst), nullptr, 5);
    CClientPipe second(L"name", Into(atSecond), nullptr, 5);
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    first.StartPipe();
    hub.StartPipe();

    second.StartPipe();

    EXPECT_FALSE(second.IsListening());
    unsigned char fromSecond = 5, toColloq = 6;
    second.Send(&fromSecond, 1);
    hub.Send(&toColloq, 1);
    ASSERT_TRUE(atHub.waitFor(1));
    ASSERT_TRUE(atFirst.waitFor(1));
    EXPECT_EQ(atHub.items()[0], Block{5});
    EXPECT_EQ(atFirst.items()[0], Block{6});

    second.StopPipe();
    EXPECT_EQ(SettledReceiverThreadCount(2), 2) << "the first pipe's and the hub's receivers only";
    second.StartPipe();
    second.StopPipe();
    EXPECT_TRUE(Exists(PortPath("com.bqlhub.colloq"))) << "the failed pipe removed the owner's port file";
    EXPECT_TRUE(first.IsListening());
    EXPECT_TRUE(atSecond.items().empty());
    first.StopPipe();
    hub.StopPipe();
}

TEST_F(PipeTest, PipeThatFailedToGetItsPortListensOnceThePortIsFree) {
    CClientPipe first(L"name", nullptr, nullptr, 5);
    CClientPipe second(L"name", nullptr, nullptr, 5);
    first.StartPipe();
    second.StartPipe();
    ASSERT_FALSE(second.IsListening());

    first.StopPipe();
    second.StartPipe();

    EXPECT_TRUE(second.IsListening());
    second.StopPipe();
}

TEST_F(PipeTest, AbandonedSocketFileOfTheLocalPortIsReclaimed) {
    ASSERT_TRUE(LeaveAbandonedSocketFile(PortPath("com.bqlhub.colloq")));
    BlockInbox atClient;
    CClientPipe client(L"name", Into(atClient), nullptr, 5);
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, nullptr);

    client.StartPipe();
    unsigned char message = 4;
    hub.Send(&message, 1);

    EXPECT_TRUE(client.IsListening());
    ASSERT_TRUE(atClient.waitFor(1));
    client.StopPipe();
}

TEST_F(PipeTest, FileThatIsNoSocketAtTheLocalPortIsLeftAloneAndBlocksListening) {
    std::ofstream(PortPath("com.bqlhub.colloq")) << "not a socket";
    CClientPipe client(L"name", nullptr, nullptr, 5);

    client.StartPipe();

    EXPECT_FALSE(client.IsListening());
    client.StopPipe();
    EXPECT_TRUE(Exists(PortPath("com.bqlhub.colloq")));
}

TEST_F(PipeTest, MissingPortDirectoryIsCreatedPrivate) {
    const std::string nested = ports / "nested";
    bqltest::ScopedEnvironment nestedDirectory("BQL_PORT_DIR", nested);
    CClientPipe client(L"name", nullptr, nullptr, 5);

    client.StartPipe();

    EXPECT_TRUE(client.IsListening());
    struct stat info {};
    ASSERT_EQ(::stat(nested.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
    client.StopPipe();
}

TEST_F(PipeTest, PortDirectoryOpenToOthersIsRefusedWithOneErrorLine) {
    bqltest::LocalLogCapture log;
    ASSERT_TRUE(log.ready());
    ASSERT_EQ(::chmod(ports.path().c_str(), 0755), 0);
    BlockInbox atHub;
    CClientPipe client(L"name", nullptr, nullptr, 5);

    client.StartPipe();

    EXPECT_FALSE(client.IsListening());
    EXPECT_FALSE(Exists(PortPath("com.bqlhub.colloq")));
    EXPECT_EQ(log.count("refused: open to group or others (mode 0755)"), 1);
    EXPECT_EQ(log.lines().size(), 1u);
    client.StopPipe();
}

TEST_F(PipeTest, SendIntoARefusedPortDirectorySendsNothing) {
    BlockInbox atHub;
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, Into(atHub));
    hub.StartPipe();
    CClientPipe client(L"name", nullptr, nullptr, 5);
    unsigned char refused = 1, marker = 2;

    ASSERT_EQ(::chmod(ports.path().c_str(), 0750), 0);
    client.Send(&refused, 1);
    ASSERT_EQ(::chmod(ports.path().c_str(), 0700), 0);
    client.Send(&marker, 1);

    ASSERT_TRUE(atHub.waitFor(1));
    EXPECT_EQ(atHub.items(), std::vector<Block>{Block{2}});
    hub.StopPipe();
}

TEST_F(PipeTest, PortDirectoryOwnedByAnotherUserIsRefused) {
    bqltest::LocalLogCapture log;
    const std::optional<ForeignDirectory> foreign = DirectoryOfAnotherUser(ports.path());
    ASSERT_TRUE(foreign.has_value());
    bqltest::ScopedEnvironment foreignDirectory("BQL_PORT_DIR", foreign->path);
    CClientPipe client(L"name", nullptr, nullptr, 5);

    client.StartPipe();

    EXPECT_FALSE(client.IsListening());
    EXPECT_EQ(log.count("refused: owned by user " + std::to_string(foreign->owner)), 1);
    EXPECT_FALSE(Exists(foreign->path + "/com.bqlhub.colloq"));
    client.StopPipe();
}

TEST_F(PipeTest, ExceptionFromTheReceiveCallbackKeepsTheReceiverRunning) {
    BlockInbox atClient;
    bool thrown = false;
    CClientPipe client(L"name",
                       [&](unsigned char* data, int length) {
                           if (!thrown) {
                               thrown = true;
                               throw std::runtime_error("receiver failed");
                           }
                           atClient.put(Block(data, data + length));
                           return 0;
                       },
                       nullptr, 5);
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, nullptr);
    client.StartPipe();
    unsigned char first = 1, second = 2;

    hub.Send(&first, 1);
    hub.Send(&second, 1);

    ASSERT_TRUE(atClient.waitFor(1));
    EXPECT_EQ(atClient.items(), std::vector<Block>{Block{2}});
    client.StopPipe();
}

TEST_F(PipeTest, EmptyReceiveCallbackIsLoggedAndTheReceiverGoesOn) {
    bqltest::LocalLogCapture log;
    CClientPipe client(L"name", nullptr, nullptr, 5);
    NamedPipe hub(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, nullptr);
    client.StartPipe();
    unsigned char message = 1;

    hub.Send(&message, 1);
    hub.Send(&message, 1);

    EXPECT_TRUE(log.waitFor("bad_function_call", 2));
    EXPECT_TRUE(client.IsListening());
    client.StopPipe();
}

TEST_F(PipeTest, SendToAReceiverThatNeverReadsGivesUpAfterTheTimeOut) {
    const StuckPort hub(PortPath("com.bqlhub.hub"));
    ASSERT_TRUE(hub.isFull());
    NamedPipe client("com.bqlhub.colloq", "com.bqlhub.hub", nullptr, 1);
    unsigned char block[2196] = {};

    std::future<void> send = std::async(std::launch::async, [&] { client.Send(block, sizeof block); });

    EXPECT_EQ(send.wait_for(60s), std::future_status::ready) << "the send never gave up";
}

TEST_F(PipeTest, FailureToStartTheReceiverThreadThrowsThreadConstructorFailed) {
    // Threads that ask for more stack than the address space holds cannot be made.
    pthread_attr_t defaults;
    ASSERT_EQ(pthread_getattr_default_np(&defaults), 0);
    pthread_attr_t huge;
    pthread_attr_init(&huge);
    pthread_attr_setstacksize(&huge, std::size_t{1} << 46);
    ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
    CClientPipe client(L"name", nullptr, nullptr, 5);

    std::string message;
    try {
        client.StartPipe();
    } catch (const std::system_error& failure) {
        message = failure.what();
    }

    pthread_setattr_default_np(&defaults);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&defaults);
    EXPECT_EQ(message.rfind("thread constructor failed", 0), 0u) << message;
    EXPECT_FALSE(client.IsListening());
    client.StopPipe();
}

}  // namespace
