#include <gtest/gtest.h>

#include <thread>

#include "EventTally.h"

namespace colloqvalidate {
namespace {

using hostharness::CallbackSlot;
using namespace std::chrono_literals;

const std::string kPrefix = "BQLColloqPlugin v.3.8.51535.41614: ";

void consume(EventTally& tally, WorkerEvent event) { tally.noteLogLine(kPrefix + workerLine(event)); }

TEST(EventTally, WorkerLinesAreRecognisedAtTheEndOfTheClientsLine) {
    EXPECT_EQ(workerEventOfLine(kPrefix + "into pluginThread() case: MUTEON_CALL_EVENT"), WorkerEvent::MuteOn);
    EXPECT_EQ(workerEventOfLine(kPrefix + "into pluginThread() case: VEXIL_CALL_EVENT"), WorkerEvent::HeadsetReport);
    EXPECT_EQ(workerEventOfLine(kPrefix + "into pluginThread() case: VEXIL_CALL_EVENT call is found, Start processing"),
              std::nullopt);
    EXPECT_EQ(workerEventOfLine(kPrefix + "Connected to Colloq successfully"), std::nullopt);
}

TEST(EventTally, CallbacksThatQueueNothingAreNotCounted) {
    EventTally tally;
    tally.noteFired(CallbackSlot::OnOffHook);
    tally.noteFired(CallbackSlot::OnVolumeChanged);
    tally.noteFired(CallbackSlot::OnActiveDeviceChanged);
    EXPECT_EQ(tally.counts().producedTotal(), 0u);
    EXPECT_EQ(tally.counts().possibleIncoming, 0u);
}

TEST(EventTally, WaitEndsOnceTheWorkerHasWrittenEveryLine) {
    EventTally tally;
    tally.noteFired(CallbackSlot::OnAudioMute);
    tally.noteFired(CallbackSlot::OnBusy);
    tally.noteFired(CallbackSlot::OnOnHook);
    std::thread worker([&tally] {
        consume(tally, WorkerEvent::MuteOn);
        consume(tally, WorkerEvent::Terminated);
        consume(tally, WorkerEvent::Terminated);
    });
    EXPECT_TRUE(tally.waitUntilWorkedOff(10s));
    worker.join();
    EXPECT_EQ(EventTally::mismatch(tally.counts()), "");
}

TEST(EventTally, WaitTimesOutWhenAnEventIsNotConsumed) {
    EventTally tally;
    tally.noteFired(CallbackSlot::OnHold);
    EXPECT_FALSE(tally.waitUntilWorkedOff(20ms));
    EXPECT_EQ(EventTally::mismatch(tally.counts()), "ON_HOLD_CALL_EVENT: 1 produced, 0 consumed");
}

TEST(EventTally, EventNoCallbackProducedIsAMismatch) {
    EventTally tally;
    consume(tally, WorkerEvent::Connected);
    EXPECT_EQ(EventTally::mismatch(tally.counts()), "CONNECTED_CALL_EVENT: 0 produced, 1 consumed");
}

TEST(EventTally, IncomingCountMayLieWithinItsBounds) {
    EventTally tally;
    tally.noteFired(CallbackSlot::OnCallWaiting);
    tally.noteFired(CallbackSlot::OnIncoming);
    tally.noteFired(CallbackSlot::OnIncoming);
    consume(tally, WorkerEvent::Incoming);
    consume(tally, WorkerEvent::Incoming);
    EXPECT_EQ(EventTally::mismatch(tally.counts()), "");
    consume(tally, WorkerEvent::Incoming);
    consume(tally, WorkerEvent::Incoming);
    EXPECT_EQ(EventTally::mismatch(tally.counts()), "INCOMING_CALL_EVENT: 4 consumed, expected 1 to 3");
}

TEST(EventTally, HeadsetReportsAreCountedButNotRequired) {
    EventTally tally;
    tally.noteHeadsetReport();
    tally.noteHeadsetReport();
    consume(tally, WorkerEvent::HeadsetReport);
    EXPECT_TRUE(tally.waitUntilWorkedOff(0ms));
    EXPECT_EQ(tally.counts().produced[static_cast<std::size_t>(WorkerEvent::HeadsetReport)], 2u);
    EXPECT_EQ(EventTally::mismatch(tally.counts()), "");
}

TEST(EventTally, BacklogWaitPassesOnceBelowTheLimit) {
    EventTally tally;
    tally.noteFired(CallbackSlot::OnConnected);
    tally.noteFired(CallbackSlot::OnConnected);
    EXPECT_FALSE(tally.waitForBacklogBelow(2, 0ms));
    consume(tally, WorkerEvent::Connected);
    EXPECT_TRUE(tally.waitForBacklogBelow(2, 0ms));
}

}  // namespace
}  // namespace colloqvalidate
