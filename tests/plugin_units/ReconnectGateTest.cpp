#include "plugin/ReconnectGate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

namespace {

bool passAllowed(ReconnectGate::Generation generation) { return static_cast<bool>(ReconnectGate::Pass(generation)); }

TEST(ReconnectGate, PassOfTheOpenGenerationIsAllowed) {
    const ReconnectGate::Generation generation = ReconnectGate::open();
    EXPECT_TRUE(passAllowed(generation));
    ReconnectGate::close(generation);
}

TEST(ReconnectGate, PassOfAClosedGenerationIsRefused) {
    const ReconnectGate::Generation generation = ReconnectGate::open();
    ReconnectGate::close(generation);
    EXPECT_FALSE(passAllowed(generation));
}

TEST(ReconnectGate, PassOfAStaleGenerationIsRefused) {
    const ReconnectGate::Generation stale = ReconnectGate::open();
    const ReconnectGate::Generation current = ReconnectGate::open();
    EXPECT_NE(stale, current);
    EXPECT_FALSE(passAllowed(stale));
    EXPECT_TRUE(passAllowed(current));
    ReconnectGate::close(current);
}

TEST(ReconnectGate, PassOfGenerationZeroIsRefusedEvenWhileOpen) {
    const ReconnectGate::Generation generation = ReconnectGate::open();
    EXPECT_FALSE(passAllowed(0));
    ReconnectGate::close(generation);
}

TEST(ReconnectGate, ClosingAStaleGenerationLeavesTheCurrentOneOpen) {
    const ReconnectGate::Generation stale = ReconnectGate::open();
    const ReconnectGate::Generation current = ReconnectGate::open();
    ReconnectGate::close(stale);
    EXPECT_TRUE(passAllowed(current));
    ReconnectGate::close(current);
}

TEST(ReconnectGate, CloseWaitsForAPassInProgress) {
    const ReconnectGate::Generation generation = ReconnectGate::open();
    std::promise<void> passTaken;
    std::promise<void> finishPass;
    std::shared_future<void> finish = finishPass.get_future().share();
    std::atomic<bool> passEnded{false};

    std::thread reconnect([&] {
        {
            ReconnectGate::Pass pass(generation);
            EXPECT_TRUE(pass);
            passTaken.set_value();
            finish.wait();
            passEnded.store(true);
        }
    });
    passTaken.get_future().wait();

    std::future<bool> closing = std::async(std::launch::async, [&] {
        ReconnectGate::close(generation);
        return passEnded.load();
    });
    // Bounded look for a close that does not wait; the order checked below is what counts.
    EXPECT_EQ(closing.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    finishPass.set_value();
    EXPECT_TRUE(closing.get());
    reconnect.join();
    EXPECT_FALSE(passAllowed(generation));
}

}  // namespace
