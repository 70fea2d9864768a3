// Starts and stops of one socket pipe from several threads at once. The Apple pipe sets its port
// up on the receiving thread under the pipe's lock, so it is left out here (see hubproxy/README.md).
#include <chrono>
#include <future>

#include <gtest/gtest.h>

#include "ReceiverThreads.h"
#include "bqltest/ScopedEnvironment.h"
#include "bqltest/TempDirectory.h"
#include "hubproxy/CClientPipe.h"

namespace {

using namespace std::chrono_literals;

class SocketPipeConcurrencyTest : public ::testing::Test {
protected:
    bqltest::TempDirectory ports;
    bqltest::ScopedEnvironment portDirectory{"BQL_PORT_DIR", ports.path()};
};

TEST_F(SocketPipeConcurrencyTest, StartAndStopFromTwoThreadsAtOnceNeverWaitForEachOther) {
    CClientPipe client(L"name", nullptr, nullptr, 5);

    // The stop lands anywhere in the start, most often while the new receiver sets itself up.
    for (int round = 0; round < 1000; ++round) {
        std::future<void> stop = std::async(std::launch::async, [&] { client.StopPipe(); });
        client.StartPipe();
        ASSERT_EQ(stop.wait_for(30s), std::future_status::ready) << "stop hung in round " << round;
    }
    client.StopPipe();

    EXPECT_EQ(SettledReceiverThreadCount(0), 0);
    EXPECT_FALSE(client.IsListening());
}

TEST_F(SocketPipeConcurrencyTest, StartsFromTwoThreadsAtOnceLeaveOneReceiver) {
    CClientPipe client(L"name", nullptr, nullptr, 5);

    std::future<void> first = std::async(std::launch::async, [&] { client.StartPipe(); });
    std::future<void> second = std::async(std::launch::async, [&] { client.StartPipe(); });
    ASSERT_EQ(first.wait_for(30s), std::future_status::ready);
    ASSERT_EQ(second.wait_for(30s), std::future_status::ready);

    EXPECT_EQ(SettledReceiverThreadCount(1), 1);
    EXPECT_TRUE(client.IsListening());
    client.StopPipe();
}

}  // namespace
