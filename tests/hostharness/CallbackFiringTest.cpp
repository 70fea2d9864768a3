// Firing the plug-in's callbacks as the client does: each of the 17 callbacks reaches the fixture
// plug-in, whose worker answers with a call into the client; callbacks come from many threads at
// once; bad slots and over-long texts are refused before anything reaches the plug-in.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "HarnessTest.h"

namespace harnesstest {
namespace {

using hostharness::CallbackArgs;
using hostharness::CallbackSlot;
using hostharness::CallDescription;
using hostharness::CallExpectation;
using hostharness::HarnessStatus;
using hostharness::HostCall;
using hostharness::RecordedCall;

class CallbackFiringTest : public HarnessTest {
protected:
    void SetUp() override {
        HarnessTest::SetUp();
        startFixture();
    }

    void fireCallEvent(CallbackSlot slot, const CallDescription& call) {
        int result = -1;
        ASSERT_EQ(host.callbacks().fireCallEvent(slot, call, &result), HarnessStatus::Ok)
            << hostharness::callbackSlotName(slot);
        EXPECT_EQ(result, 0);
    }
};

struct CallEventAnswer {
    CallbackSlot slot;
    HostCall answer;
};

const CallEventAnswer kCallEventAnswers[] = {
    {CallbackSlot::OnIncoming, HostCall::AnswerCall}, {CallbackSlot::OnCallWaiting, HostCall::RejectCall},
    {CallbackSlot::OnConnected, HostCall::HoldCall},  {CallbackSlot::OnHold, HostCall::ResumeCall},
    {CallbackSlot::OnOnHook, HostCall::EndCall},
};

TEST_F(CallbackFiringTest, CallEventsReachThePluginWhichAnswersFromItsOwnThread) {
    int32_t id = 1;
    for (const CallEventAnswer& expected : kCallEventAnswers) {
        SCOPED_TRACE(hostharness::callbackSlotName(expected.slot));
        fireCallEvent(expected.slot, {id, 7, 0, "5551234", "Ada"});
        RecordedCall answered;
        ASSERT_EQ(waitFor(expected.answer, "fixture-dev/" + std::to_string(id), kArrives, &answered),
                  HarnessStatus::Ok);
        EXPECT_NE(answered.thread, std::this_thread::get_id());
        ++id;
    }
}

TEST_F(CallbackFiringTest, AudioMuteAndUnmuteReachThePlugin) {
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::OnAudioMute, {}), HarnessStatus::Ok);
    EXPECT_EQ(waitFor(HostCall::MuteCall, "fixture-dev"), HarnessStatus::Ok);
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::OnAudioUnmute, {}), HarnessStatus::Ok);
    EXPECT_EQ(waitFor(HostCall::UnmuteCall, "fixture-dev"), HarnessStatus::Ok);
}

TEST_F(CallbackFiringTest, ReorderPassesTheRecordsNumberToMakeCall) {
    fireCallEvent(CallbackSlot::OnReorder, {4, 3, 0, "+4930123456", "Lab"});
    CallExpectation expected;
    expected.call = HostCall::MakeCall;
    expected.device = "fixture-dev";
    expected.number = "+4930123456";
    EXPECT_EQ(host.journal().waitFor(expected, kArrives), HarnessStatus::Ok);
}

TEST_F(CallbackFiringTest, RemoteAlertingSendsEachCharacterOfTheNumberAsAKeyInOrder) {
    fireCallEvent(CallbackSlot::OnRemoteAlerting, {9, 6, 0, "1*#", "Desk"});
    CallExpectation last;
    last.call = HostCall::SendDtmf;
    last.key = '#';
    ASSERT_EQ(host.journal().waitFor(last, kArrives), HarnessStatus::Ok);
    const auto keys = host.journal().entriesOf(HostCall::SendDtmf);
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0].key, '1');
    EXPECT_EQ(keys[1].key, '*');
    EXPECT_EQ(keys[2].key, '#');
    EXPECT_EQ(keys[2].device, "fixture-dev/9");
    EXPECT_LT(keys[0].sequence, keys[1].sequence);
}

TEST_F(CallbackFiringTest, BusyMakesThePluginFetchTheConfiguredCalls) {
    ASSERT_EQ(host.responses().setCalls({{1, 9, 0, "555", "A"}, {2, 10, 0, "666", "B"}}), HarnessStatus::Ok);
    fireCallEvent(CallbackSlot::OnBusy, {1, 9, 0, "555", "A"});
    EXPECT_EQ(waitForLog("Fixture sees 2 calls: 1=555 2=666"), HarnessStatus::Ok);
    const auto fetches = host.journal().entriesOf(HostCall::GetCalls);
    ASSERT_EQ(fetches.size(), 1u);
    EXPECT_EQ(fetches[0].max, 10);
}

TEST_F(CallbackFiringTest, OffHookPassesTheCallRecordToThePlugin) {
    fireCallEvent(CallbackSlot::OnOffHook, {5, 1, 0, "", ""});
    EXPECT_EQ(waitForLog("Fixture onOffHook 5"), HarnessStatus::Ok);
}

TEST_F(CallbackFiringTest, CallEventCarriesTheCallListToThePlugin) {
    CallbackArgs args;
    args.call = {3, 7, 0, "1", "x"};
    args.calls = {{3, 7, 0, "1", "x"}, {4, 9, 0, "2", "y"}};
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::OnIncoming, args), HarnessStatus::Ok);
    EXPECT_EQ(waitFor(HostCall::AnswerCall, "fixture-dev/3"), HarnessStatus::Ok);
}

TEST_F(CallbackFiringTest, ActiveDeviceChangeReleasesThePreviousDeviceBeforeActivatingTheNew) {
    CallbackArgs args;
    args.code = 2;
    args.device = "hid/vid_2f0c&pid_ac27/NEW";
    args.second = "hid/vid_2f0c&pid_ac27/OLD";
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::OnActiveDeviceChanged, args), HarnessStatus::Ok);
    RecordedCall activated;
    ASSERT_EQ(waitFor(HostCall::ActiveDeviceChanged, args.device, kArrives, &activated), HarnessStatus::Ok);
    const auto released = host.journal().entriesOf(HostCall::ReleaseActiveDevice);
    ASSERT_EQ(released.size(), 1u);
    EXPECT_EQ(released[0].device, args.second);
    EXPECT_LT(released[0].sequence, activated.sequence);
}

TEST_F(CallbackFiringTest, VolumeAndRegistrationCallbacksPassTheirArguments) {
    CallbackArgs volume;
    volume.code = 2;
    volume.volume = 40;
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::OnVolumeChanged, volume), HarnessStatus::Ok);
    EXPECT_EQ(waitForLog("Fixture onVolumeChanged 2 40"), HarnessStatus::Ok);

    CallbackArgs device;
    device.device = "hid/vid_2f0c&pid_0123/S9";
    device.volume = 30;
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::SetDeviceMicrophoneVolume, device), HarnessStatus::Ok);
    EXPECT_EQ(waitForLog("Fixture microphone hid/vid_2f0c&pid_0123/S9 30"), HarnessStatus::Ok);
    device.volume = 70;
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::SetDeviceSpeakerVolume, device), HarnessStatus::Ok);
    EXPECT_EQ(waitForLog("Fixture speaker hid/vid_2f0c&pid_0123/S9 70"), HarnessStatus::Ok);

    CallbackArgs status;
    status.code = 3;
    ASSERT_EQ(host.callbacks().fire(CallbackSlot::OnPhoneRegistrationStatusChanged, status), HarnessStatus::Ok);
    EXPECT_EQ(waitForLog("Fixture registration status 3"), HarnessStatus::Ok);

    ASSERT_EQ(host.callbacks().fire(CallbackSlot::NotifySubscriberNumbers, {}), HarnessStatus::Ok);
    EXPECT_EQ(waitForLog("Fixture subscriber numbers 0"), HarnessStatus::Ok);
}

TEST_F(CallbackFiringTest, CallbacksFiredFromManyThreadsAllReachThePlugin) {
    constexpr int kThreads = 6;
    constexpr int kCallsPerThread = 10;
    std::atomic<int> refused{0};
    std::vector<std::thread> clients;
    for (int t = 0; t < kThreads; ++t) {
        clients.emplace_back([this, t, &refused] {
            for (int i = 0; i < kCallsPerThread; ++i) {
                const CallDescription call{t * 100 + i, 7, 0, "555", "caller"};
                if (host.callbacks().fireCallEvent(CallbackSlot::OnIncoming, call) != HarnessStatus::Ok) {
                    ++refused;
                }
            }
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    EXPECT_EQ(refused.load(), 0);
    for (int t = 0; t < kThreads; ++t) {
        for (int i = 0; i < kCallsPerThread; ++i) {
            EXPECT_EQ(waitFor(HostCall::AnswerCall, "fixture-dev/" + std::to_string(t * 100 + i)), HarnessStatus::Ok);
        }
    }
    EXPECT_EQ(host.journal().countOf(HostCall::AnswerCall), static_cast<std::size_t>(kThreads * kCallsPerThread));
}

TEST_F(CallbackFiringTest, CallbacksRacingUnregistrationEitherRunOrAreRefused) {
    std::atomic<bool> unregistered{false};
    std::atomic<int> unexpected{0};
    std::vector<std::thread> clients;
    for (int t = 0; t < 4; ++t) {
        clients.emplace_back([this, &unregistered, &unexpected] {
            // Keep firing until a fire after unregistration has been refused (or long enough).
            for (int fired = 0; fired < 2000; ++fired) {
                const bool after = unregistered.load();
                const HarnessStatus status = host.callbacks().fire(CallbackSlot::OnAudioMute, {});
                if (status == HarnessStatus::NotRegistered) {
                    return;
                }
                if (status != HarnessStatus::Ok || after) {
                    ++unexpected;
                    return;
                }
            }
        });
    }
    ASSERT_EQ(waitFor(HostCall::MuteCall, "fixture-dev"), HarnessStatus::Ok);
    ASSERT_EQ(plugin.uninitialize(), HarnessStatus::Ok);
    unregistered = true;
    for (std::thread& client : clients) {
        client.join();
    }
    EXPECT_EQ(unexpected.load(), 0);
    EXPECT_FALSE(host.callbacks().isRegistered());
}

class CallbackBadInputTest : public CallbackFiringTest {
protected:
    // Fires a harmless callback and waits for its answer, so that anything a refused call had
    // let through would be in the journal by now; true if nothing but that answer came.
    bool onlyTheMarkerReachedThePlugin(uint64_t before) {
        if (host.callbacks().fire(CallbackSlot::OnAudioUnmute, {}) != HarnessStatus::Ok ||
            waitFor(HostCall::UnmuteCall, "fixture-dev") != HarnessStatus::Ok) {
            return false;
        }
        std::size_t later = 0;
        for (const RecordedCall& entry : host.journal().entries()) {
            later += entry.sequence > before ? 1 : 0;
        }
        return later == 1;
    }
};

TEST_F(CallbackBadInputTest, UnknownSlotsAreRefused) {
    const uint64_t before = host.journal().lastSequence();
    EXPECT_EQ(host.callbacks().fire(static_cast<CallbackSlot>(23), {}), HarnessStatus::UnknownSlot);
    EXPECT_EQ(host.callbacks().fire(static_cast<CallbackSlot>(-1), {}), HarnessStatus::UnknownSlot);
    EXPECT_EQ(host.callbacks().fireCallEvent(CallbackSlot::OnAudioMute, {}), HarnessStatus::UnknownSlot);
    EXPECT_TRUE(onlyTheMarkerReachedThePlugin(before));
}

TEST_F(CallbackBadInputTest, EmptySlotsAreRefused) {
    const uint64_t before = host.journal().lastSequence();
    for (const CallbackSlot slot : {CallbackSlot::Empty2, CallbackSlot::Empty3, CallbackSlot::Empty14,
                                    CallbackSlot::Empty16, CallbackSlot::Empty21, CallbackSlot::Empty22}) {
        EXPECT_EQ(host.callbacks().fire(slot, {}), HarnessStatus::EmptySlot) << hostharness::callbackSlotName(slot);
    }
    EXPECT_TRUE(onlyTheMarkerReachedThePlugin(before));
}

TEST_F(CallbackBadInputTest, TextsLongerThanTheirRecordFieldsAreRefused) {
    const uint64_t before = host.journal().lastSequence();
    const std::string number33(33, '1');
    const std::string name55(55, 'n');
    EXPECT_EQ(host.callbacks().fireCallEvent(CallbackSlot::OnIncoming, {1, 7, 0, number33, "a"}),
              HarnessStatus::TextTooLong);
    EXPECT_EQ(host.callbacks().fireCallEvent(CallbackSlot::OnIncoming, {1, 7, 0, "1", name55}),
              HarnessStatus::TextTooLong);
    CallbackArgs listTooLong;
    listTooLong.call = {1, 7, 0, "1", "a"};
    listTooLong.calls = {{2, 7, 0, number33, "b"}};
    EXPECT_EQ(host.callbacks().fire(CallbackSlot::OnIncoming, listTooLong), HarnessStatus::TextTooLong);
    EXPECT_TRUE(onlyTheMarkerReachedThePlugin(before));
}

TEST_F(CallbackBadInputTest, TextsThatExactlyFillTheirFieldsAreAccepted) {
    const std::string number32(32, '2');
    const std::string name54(54, 'm');
    EXPECT_EQ(host.callbacks().fireCallEvent(CallbackSlot::OnReorder, {1, 3, 0, number32, name54}), HarnessStatus::Ok);
    CallExpectation expected;
    expected.call = HostCall::MakeCall;
    expected.number = number32;
    EXPECT_EQ(host.journal().waitFor(expected, kArrives), HarnessStatus::Ok);
}

}  // namespace
}  // namespace harnesstest
