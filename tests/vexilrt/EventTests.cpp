// Events: what reaches which subscriber, on which thread, and the guarantees of unsubscribing.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>

#include "RuntimeFixture.h"

namespace vexiltest {
namespace {

class EventTest : public RuntimeTest {
protected:
    void SetUp() override {
        RuntimeTest::SetUp();
        startWithSession();
        ASSERT_EQ(VEXIL_OK, session_->registerCallback(&callEvents_));
        ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
    }

    ReceivedEvent only() {
        settle();
        const auto events = log_.items();
        EXPECT_EQ(1u, events.size());
        return events.empty() ? ReceivedEvent{} : events.front();
    }
};

template <std::size_t N>
bool zeroAfterText(const wchar_t (&text)[N]) {
    const std::size_t length = std::wcslen(text);
    for (std::size_t i = length; i < N; ++i) {
        if (text[i] != L'\0') {
            return false;
        }
    }
    return true;
}

template <std::size_t N>
bool zeroAfterText(const char (&text)[N]) {
    const std::size_t length = std::strlen(text);
    for (std::size_t i = length; i < N; ++i) {
        if (text[i] != '\0') {
            return false;
        }
    }
    return true;
}

TEST_F(EventTest, DeviceEventsArriveOnTheRuntimesOwnThread) {
    const std::string path = plug(0xac27, "EV1");
    ASSERT_EQ(VEXILCTL_OK, vexilctl_remove_headset(path.c_str()));
    settle();
    const auto events = log_.items();
    ASSERT_EQ(2u, events.size());
    for (const ReceivedEvent& event : events) {
        EXPECT_EQ(ReceivedEvent::Kind::DeviceState, event.kind);
        EXPECT_NE(std::this_thread::get_id(), event.thread);
        EXPECT_EQ("vexil-events", event.threadName);
        EXPECT_EQ(path, narrow(event.deviceState.devicePath));
        EXPECT_TRUE(zeroAfterText(event.deviceState.devicePath));
    }
    EXPECT_EQ(events[0].thread, events[1].thread);
    EXPECT_EQ(DEVICE_STATE_ATTACHED, events[0].deviceState.state);
    EXPECT_EQ(DEVICE_STATE_REMOVED, events[1].deviceState.state);
}

TEST_F(EventTest, AButtonPressReachesTheSessionsSubscribers) {
    const std::string path = plug(0xac27, "EV2");
    settle();
    log_.clear();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_DTMF_KEY, 12, "1#"));
    const ReceivedEvent event = only();
    EXPECT_EQ(ReceivedEvent::Kind::CallState, event.kind);
    EXPECT_EQ("vexil-events", event.threadName);
    EXPECT_EQ(12, event.callState.callId);
    EXPECT_EQ(CALL_STATE_DTMF_KEY, event.callState.callState);
    EXPECT_EQ(path, narrow(event.callState.devicePath));
    EXPECT_STREQ("1#", event.callState.dtmfKeys);
    EXPECT_STREQ("1#", event.callState.dtmfKeys2);
    EXPECT_TRUE(zeroAfterText(event.callState.devicePath));
    EXPECT_TRUE(zeroAfterText(event.callState.dtmfKeys));
    EXPECT_TRUE(zeroAfterText(event.callState.dtmfKeys2));
}

TEST_F(EventTest, AButtonPressWithoutKeysCarries255) {
    const std::string path = plug(0xac27, "EV3");
    settle();
    log_.clear();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 3, nullptr));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_HOLD_CALL, 3, ""));
    settle();
    const auto events = log_.items();
    ASSERT_EQ(2u, events.size());
    for (const ReceivedEvent& event : events) {
        EXPECT_STREQ(VEXIL_NO_DTMF_KEY, event.callState.dtmfKeys);
        EXPECT_STREQ(VEXIL_NO_DTMF_KEY, event.callState.dtmfKeys2);
    }
    EXPECT_EQ(CALL_STATE_ACCEPT_CALL, events[0].callState.callState);
    EXPECT_EQ(CALL_STATE_HOLD_CALL, events[1].callState.callState);
}

TEST_F(EventTest, DiallingReachesOnCallRequest) {
    const std::string path = plug(0xac27, "EV4");
    settle();
    log_.clear();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_dial(path.c_str(), "+1 555 0100", "0100"));
    const ReceivedEvent event = only();
    EXPECT_EQ(ReceivedEvent::Kind::CallRequest, event.kind);
    EXPECT_EQ("vexil-events", event.threadName);
    EXPECT_EQ("+1 555 0100", narrow(event.callRequest.number));
    EXPECT_EQ("0100", narrow(event.callRequest.alternateNumber));
    EXPECT_EQ(path, narrow(event.callRequest.devicePath));
    EXPECT_TRUE(zeroAfterText(event.callRequest.number));
    EXPECT_TRUE(zeroAfterText(event.callRequest.alternateNumber));
}

TEST_F(EventTest, DiallingWithoutAnAlternateSendsItEmpty) {
    const std::string path = plug(0xac27, "EV5");
    settle();
    log_.clear();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_dial(path.c_str(), "", nullptr));
    const ReceivedEvent event = only();
    EXPECT_EQ(L'\0', event.callRequest.number[0]);
    EXPECT_EQ(L'\0', event.callRequest.alternateNumber[0]);
}

TEST_F(EventTest, ASessionManagerReportReachesItsSubscribersWithoutACall) {
    const std::string path = plug(0xac27, "EV6");
    settle();
    log_.clear();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_report_call_state(path.c_str(), 28));
    const ReceivedEvent event = only();
    EXPECT_EQ(ReceivedEvent::Kind::ManagerCallState, event.kind);
    EXPECT_EQ(-1, event.callState.callId);
    EXPECT_EQ(28, event.callState.callState);
    EXPECT_EQ(path, narrow(event.callState.devicePath));
    EXPECT_STREQ(VEXIL_NO_DTMF_KEY, event.callState.dtmfKeys);
}

TEST_F(EventTest, AReportWithoutADeviceCarriesAnEmptyPath) {
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button("", CALL_STATE_ACCEPT_CALL, 1, nullptr));
    const ReceivedEvent event = only();
    EXPECT_EQ(L'\0', event.callState.devicePath[0]);
    EXPECT_TRUE(zeroAfterText(event.callState.devicePath));
}

TEST_F(EventTest, RefusedControlCallsRaiseNoEventAndChangeNothing) {
    const std::string path = plug(0xac27, "EV11");
    settle();
    log_.clear();
    const std::string unknown = headsetPath(0xac27, "EV12");
    const std::string overlongPath(VEXILCTL_PATH_CHARS, 'p');
    const std::string overlongKeys(VEXILCTL_KEYS_BYTES, '1');
    const std::string overlongNumber(VEXILCTL_NUMBER_CHARS, '5');

    EXPECT_EQ(VEXILCTL_E_ALREADY_EXISTS, vexilctl_add_headset(path.c_str(), "Other", 1, 0));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_add_headset(overlongPath.c_str(), "Model", 1, 0));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset(unknown.c_str(), nullptr, 1, 0));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_add_headset("hid/\xc3(", "Model", 1, 0));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_remove_headset(unknown.c_str()));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_remove_headset(nullptr));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_press_button(unknown.c_str(), CALL_STATE_ACCEPT_CALL, 1, nullptr));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_press_button(overlongPath.c_str(), CALL_STATE_ACCEPT_CALL, 1, nullptr));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_press_button(path.c_str(), CALL_STATE_DTMF_KEY, 1, overlongKeys.c_str()));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_press_button(path.c_str(), CALL_STATE_DTMF_KEY, 1, "\xff"));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_press_button(nullptr, CALL_STATE_ACCEPT_CALL, 1, nullptr));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_dial(unknown.c_str(), "5551234", nullptr));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_dial(path.c_str(), nullptr, nullptr));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_dial(path.c_str(), overlongNumber.c_str(), nullptr));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_dial(path.c_str(), "5551234", overlongNumber.c_str()));
    EXPECT_EQ(VEXILCTL_E_NOT_FOUND, vexilctl_report_call_state(unknown.c_str(), 28));
    EXPECT_EQ(VEXILCTL_E_TOO_LONG, vexilctl_report_call_state(overlongPath.c_str(), 28));
    EXPECT_EQ(VEXILCTL_E_INVALID_ARG, vexilctl_report_call_state(nullptr, 28));
    settle();

    EXPECT_EQ(0u, log_.count());
    int32_t headsets = 0;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_count(&headsets));
    EXPECT_EQ(1, headsets);
    VexilCtlHeadset kept{};
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_at(0, &kept));
    EXPECT_EQ(path, kept.path);
    EXPECT_STREQ("Model 5.1-X.2", kept.productName);
    EXPECT_EQ(1, kept.isActive);

    // The subscribers were listening all along: the next valid press reaches them.
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 4, nullptr));
    EXPECT_EQ(4, only().callState.callId);
}

TEST_F(EventTest, EventsArriveInTheOrderTheyWereRaised) {
    const std::string path = plug(0xac27, "EV7");
    for (int32_t id = 0; id < 20; ++id) {
        ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, id, nullptr));
    }
    settle();
    const auto events = log_.items();
    ASSERT_EQ(21u, events.size());
    EXPECT_EQ(ReceivedEvent::Kind::DeviceState, events[0].kind);
    for (int32_t id = 0; id < 20; ++id) {
        EXPECT_EQ(id, events[static_cast<std::size_t>(id) + 1].callState.callId);
    }
}

TEST_F(EventTest, ButtonsNeedARunningRuntimeAndASession) {
    const std::string path = plug(0xac27, "EV8");
    ASSERT_EQ(VEXIL_OK, manager_->unregisterSession(session_.get()));
    EXPECT_EQ(VEXILCTL_E_NO_SESSION, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 1, nullptr));
    EXPECT_EQ(VEXILCTL_E_NO_SESSION, vexilctl_dial(path.c_str(), "1", nullptr));
    ShutDownVexilRuntime();
    EXPECT_EQ(VEXILCTL_E_NOT_RUNNING, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 1, nullptr));
    EXPECT_EQ(VEXILCTL_E_NOT_RUNNING, vexilctl_dial(path.c_str(), "1", nullptr));
    EXPECT_EQ(VEXILCTL_E_NOT_RUNNING, vexilctl_report_call_state(path.c_str(), 28));
}

TEST_F(EventTest, HeadsetsPluggedWhileStoppedRaiseNothingLater) {
    ShutDownVexilRuntime();
    plug(0xac27, "EV9");
    ASSERT_EQ(VEXIL_OK, InitVexilRuntime());
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
    settle();
    EXPECT_EQ(0u, log_.count());
    int32_t headsets = 0;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_headset_count(&headsets));
    EXPECT_EQ(1, headsets);
}

TEST_F(EventTest, AnUnregisteredSubscriberIsNeverCalledAgain) {
    EventLog otherLog;
    RecordingManagerEvents other(otherLog);
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&other));
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&managerEvents_));
    plug(0xac27, "EV10");
    ASSERT_TRUE(otherLog.waitFor(1, kPatience));
    settle();
    EXPECT_EQ(0u, log_.count());
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&other));
}

TEST_F(EventTest, UnregisteringASessionManagerSubscriberWaitsForItsDelivery) {
    Signal entered;
    Signal release;
    std::atomic<bool> deliveryFinished{false};
    RecordingManagerEvents blocker(log_, [&](const ReceivedEvent&) {
        entered.raise();
        release.waitFor();
        deliveryFinished = true;
    });
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&managerEvents_));
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&blocker));
    plug(0xac27, "EV11");
    ASSERT_TRUE(entered.waitFor());

    Signal calling;
    Signal returned;
    std::atomic<bool> finishedBeforeReturn{false};
    std::thread unsubscriber([&] {
        calling.raise();
        EXPECT_EQ(VEXIL_OK, manager_->unregisterCallback(&blocker));
        finishedBeforeReturn = deliveryFinished.load();
        returned.raise();
    });
    ASSERT_TRUE(calling.waitFor());
    EXPECT_FALSE(returned.waitFor(std::chrono::milliseconds(200)));
    release.raise();
    EXPECT_TRUE(returned.waitFor());
    unsubscriber.join();
    EXPECT_TRUE(finishedBeforeReturn);
}

TEST_F(EventTest, UnregisteringACallSubscriberWaitsForItsDelivery) {
    const std::string path = plug(0xac27, "EV12");
    settle();
    Signal entered;
    Signal release;
    std::atomic<bool> deliveryFinished{false};
    RecordingCallEvents blocker(log_, [&](const ReceivedEvent&) {
        entered.raise();
        release.waitFor();
        deliveryFinished = true;
    });
    ASSERT_EQ(VEXIL_OK, session_->unregisterCallback(&callEvents_));
    ASSERT_EQ(VEXIL_OK, session_->registerCallback(&blocker));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 1, nullptr));
    ASSERT_TRUE(entered.waitFor());

    Signal calling;
    Signal returned;
    std::atomic<bool> finishedBeforeReturn{false};
    std::thread unsubscriber([&] {
        calling.raise();
        EXPECT_EQ(VEXIL_OK, session_->unregisterCallback(&blocker));
        finishedBeforeReturn = deliveryFinished.load();
        returned.raise();
    });
    ASSERT_TRUE(calling.waitFor());
    EXPECT_FALSE(returned.waitFor(std::chrono::milliseconds(200)));
    release.raise();
    EXPECT_TRUE(returned.waitFor());
    unsubscriber.join();
    EXPECT_TRUE(finishedBeforeReturn);
}

TEST_F(EventTest, ShutdownWaitsForADeliveryInProgress) {
    Signal entered;
    Signal release;
    std::atomic<bool> deliveryFinished{false};
    RecordingManagerEvents blocker(log_, [&](const ReceivedEvent&) {
        entered.raise();
        release.waitFor();
        deliveryFinished = true;
    });
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&blocker));
    plug(0xac27, "EV13");
    ASSERT_TRUE(entered.waitFor());

    Signal returned;
    std::atomic<bool> finishedBeforeReturn{false};
    std::thread stopper([&] {
        ShutDownVexilRuntime();
        finishedBeforeReturn = deliveryFinished.load();
        returned.raise();
    });
    EXPECT_FALSE(returned.waitFor(std::chrono::milliseconds(200)));
    release.raise();
    EXPECT_TRUE(returned.waitFor());
    stopper.join();
    EXPECT_TRUE(finishedBeforeReturn);
}

TEST_F(EventTest, ASubscriberMayUnsubscribeItselfDuringADelivery) {
    const std::string path = plug(0xac27, "EV14");
    settle();
    int32_t status = -1;
    RecordingCallEvents selfRemoving(log_, [&](const ReceivedEvent&) {
        status = session_->unregisterCallback(&selfRemoving);
    });
    ASSERT_EQ(VEXIL_OK, session_->unregisterCallback(&callEvents_));
    ASSERT_EQ(VEXIL_OK, session_->registerCallback(&selfRemoving));
    log_.clear();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 1, nullptr));
    ASSERT_EQ(VEXILCTL_OK, vexilctl_press_button(path.c_str(), CALL_STATE_ACCEPT_CALL, 2, nullptr));
    settle();
    EXPECT_EQ(VEXIL_OK, status);
    EXPECT_EQ(1u, log_.count());
}

TEST_F(EventTest, ASubscriberMayCallBackIntoTheRuntimeLikeASoftphoneAttaching) {
    std::atomic<int32_t> status{-1};
    std::string pathSeen;
    RecordingManagerEvents attacher(log_, [&](const ReceivedEvent& event) {
        if (event.kind != ReceivedEvent::Kind::DeviceState || event.deviceState.state != DEVICE_STATE_ATTACHED) {
            return;
        }
        IDevice* device = nullptr;
        status = session_->getActiveDevice(&device);
        if (device != nullptr) {
            wchar_t path[VEXIL_DEVICE_PATH_CHARS] = {};
            device->getDevicePath(path, VEXIL_DEVICE_PATH_CHARS);
            pathSeen = narrow(path);
            device->Release();
        }
        FakeCall call(9);
        ICallCommand* command = nullptr;
        if (session_->getCallCommand(&command) == VEXIL_OK) {
            command->insertCall(&call, nullptr);
            command->Release();
        }
    });
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&attacher));
    const std::string path = plug(0xac27, "EV15");
    settle();
    EXPECT_EQ(VEXIL_OK, status.load());
    EXPECT_EQ(path, pathSeen);
    int32_t state = 0;
    ASSERT_EQ(VEXILCTL_OK, vexilctl_get_call_state(9, &state));
    EXPECT_EQ(VEXILCTL_CALL_ACTIVE, state);
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&attacher));
}

TEST_F(EventTest, WaitingForIdleFromTheEventThreadIsRefused) {
    std::atomic<int32_t> status{-1};
    RecordingManagerEvents waiter(log_, [&](const ReceivedEvent&) { status = vexilctl_wait_idle(1000); });
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&waiter));
    plug(0xac27, "EV16");
    settle();
    EXPECT_EQ(VEXILCTL_E_WRONG_THREAD, status.load());
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&waiter));
}

TEST_F(EventTest, WaitingForIdleTimesOutWhileADeliveryIsStuck) {
    Signal entered;
    Signal release;
    RecordingManagerEvents blocker(log_, [&](const ReceivedEvent&) {
        entered.raise();
        release.waitFor();
    });
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&blocker));
    plug(0xac27, "EV17");
    ASSERT_TRUE(entered.waitFor());
    EXPECT_EQ(VEXILCTL_E_TIMEOUT, vexilctl_wait_idle(50));
    release.raise();
    settle();
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&blocker));
}

TEST_F(EventTest, ASubscriberThatThrowsDoesNotStopTheOthers) {
    RecordingManagerEvents thrower(log_, [](const ReceivedEvent&) { throw std::runtime_error("subscriber bug"); });
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&managerEvents_));
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&thrower));
    ASSERT_EQ(VEXIL_OK, manager_->registerCallback(&managerEvents_));
    plug(0xac27, "EV18");
    plug(0xac28, "EV19");
    settle();
    EXPECT_EQ(4u, log_.count());
    ASSERT_EQ(VEXIL_OK, manager_->unregisterCallback(&thrower));
}

TEST_F(EventTest, SubscribersComingAndGoingDuringDeliveriesMissNothingForTheOthers) {
    constexpr int kPlugs = 100;
    std::thread churn([this] {
        EventLog churnLog;
        RecordingManagerEvents transient(churnLog);
        for (int i = 0; i < 200; ++i) {
            EXPECT_EQ(VEXIL_OK, manager_->registerCallback(&transient));
            EXPECT_EQ(VEXIL_OK, manager_->unregisterCallback(&transient));
        }
    });
    std::thread plugger([this] {
        for (int i = 0; i < kPlugs; ++i) {
            const std::string path = plug(0xac27, "CHURN" + std::to_string(i));
            EXPECT_EQ(VEXILCTL_OK, vexilctl_remove_headset(path.c_str()));
        }
    });
    churn.join();
    plugger.join();
    settle();
    EXPECT_EQ(2u * kPlugs, log_.count());
}

}  // namespace
}  // namespace vexiltest
