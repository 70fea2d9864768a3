// The model client behind the harness's tables, with a recording callback table in place of
// a plug-in: the plug-in's operations reach the model, its callbacks come back on the client's
// own thread, getCalls reports the model's calls, and every crossing is on the timeline.
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <sstream>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ModelClient.h"
#include "TimelinePrinter.h"

namespace colloqsim {
namespace {

using namespace std::chrono_literals;

constexpr const char* kDevice = "hid/vid_2f0c&pid_0a1b/SN1";

struct Fired {
    std::string callback;
    int32_t callId = 0;
    std::thread::id thread;
};

// What the fake plug-in's callbacks saw; they run on the client's threads.
class FiredLog {
public:
    void add(const std::string& callback, int32_t callId) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            fired_.push_back(Fired{callback, callId, std::this_thread::get_id()});
        }
        changed_.notify_all();
    }
    bool waitFor(const std::string& callback, int32_t callId, Fired* found) {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, 10s, [&] {
            for (const Fired& fired : fired_) {
                if (fired.callback == callback && fired.callId == callId) {
                    *found = fired;
                    return true;
                }
            }
            return false;
        });
    }
    void clear() {
        std::lock_guard<std::mutex> lock(mutex_);
        fired_.clear();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Fired> fired_;
};

FiredLog& firedLog() {
    static FiredLog log;
    return log;
}

extern "C" int recordIncoming(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t**, int) {
    firedLog().add("onIncoming", call->callId);
    return 0;
}
extern "C" int recordConnected(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t**, int) {
    firedLog().add("onConnected", call->callId);
    return 0;
}
extern "C" int recordOnHook(Accessory_CallInfo_v1_0_t* call, Accessory_CallInfo_v1_0_t**, int) {
    firedLog().add("onOnHook", call->callId);
    return 0;
}
extern "C" int recordMute() {
    firedLog().add("onAudioMute", 0);
    return 0;
}

class ColloqSimModelClientTest : public ::testing::Test {
protected:
    void SetUp() override {
        host.reset();
        firedLog().clear();
        callbacks.onIncoming = recordIncoming;
        callbacks.onConnected = recordConnected;
        callbacks.onOnHook = recordOnHook;
        callbacks.onAudioMute = recordMute;
        ASSERT_EQ(host.entryPoint()(0x10001u, &table), 0);
        ASSERT_EQ(table.registerAccessoryCallbacks(&callbacks), 0);
        std::string error;
        ASSERT_TRUE(client.start(&error)) << error;
    }
    void TearDown() override {
        client.stop();
        host.reset();
    }

    hostharness::HostHarness& host = hostharness::HostHarness::instance();
    std::ostringstream shown;
    Timeline timeline{makePrinter(OutputStyle::Plain, shown), false};
    ModelClient client{host, timeline};
    Accessory_CallControlAPI_v1_0_t table{};
    Accessory_CallControlCallback_v1_0_t callbacks{};
};

TEST_F(ColloqSimModelClientTest, UserActionsFireOnTheCallersThread) {
    ASSERT_EQ(client.act([](ClientModel& model) { return model.incoming(17, "5551234", "Ann", false); }), "");
    Fired fired;
    ASSERT_TRUE(firedLog().waitFor("onIncoming", 17, &fired));
    EXPECT_EQ(fired.thread, std::this_thread::get_id());
}

TEST_F(ColloqSimModelClientTest, ARefusedActionGivesItsReasonAndFiresNothing) {
    EXPECT_EQ(client.act([](ClientModel& model) { return model.userAnswers(5); }), "the client has no call 5");
    EXPECT_TRUE(timeline.eventsOf("callback").empty());
}

TEST_F(ColloqSimModelClientTest, AnswerCallFromThePluginConnectsAndFiresOnConnectedOnTheClientsThread) {
    ASSERT_EQ(client.act([](ClientModel& model) { return model.incoming(17, "5551234", "Ann", false); }), "");
    table.answerCall(kDevice);
    Fired fired;
    ASSERT_TRUE(firedLog().waitFor("onConnected", 17, &fired));
    EXPECT_NE(fired.thread, std::this_thread::get_id());
    ASSERT_TRUE(client.waitIdle(10s));
    EXPECT_EQ(client.snapshot().calls().at(0).state, 9);
}

TEST_F(ColloqSimModelClientTest, EndCallAndMuteCallFromThePluginFireTheirCallbacks) {
    ASSERT_EQ(client.act([](ClientModel& model) { return model.incoming(17, "5551234", "Ann", false); }), "");
    ASSERT_EQ(client.act([](ClientModel& model) { return model.userAnswers(17); }), "");
    table.muteCall(kDevice);
    table.endCall(kDevice);
    Fired fired;
    EXPECT_TRUE(firedLog().waitFor("onAudioMute", 0, &fired));
    EXPECT_TRUE(firedLog().waitFor("onOnHook", 17, &fired));
}

TEST_F(ColloqSimModelClientTest, GetCallsReportsTheModelsCalls) {
    ASSERT_EQ(client.act([](ClientModel& model) { return model.incoming(17, "5551234", "Ann Smith", false); }), "");
    Accessory_CallInfo_v1_0_t records[10] = {};
    Accessory_CallInfo_v1_0_t* pointers[10];
    for (int i = 0; i < 10; ++i) {
        pointers[i] = &records[i];
    }
    ASSERT_EQ(table.getCalls(pointers, 10), 1);
    EXPECT_EQ(records[0].callId, 17);
    EXPECT_EQ(records[0].callState, 7);
    EXPECT_STREQ(records[0].number, "5551234");
    EXPECT_STREQ(records[0].displayName, "Ann Smith");
}

TEST_F(ColloqSimModelClientTest, EveryCrossingIsOnTheTimelineInOrder) {
    ASSERT_EQ(client.act([](ClientModel& model) { return model.incoming(17, "5551234", "Ann", false); }), "");
    table.answerCall(kDevice);
    EXPECT_TRUE(timeline.take(EventPattern{"callback", "onIncoming", ""}, 10s).has_value());
    EXPECT_TRUE(timeline.take(EventPattern{"plugin", "answerCall", kDevice}, 10s).has_value());
    EXPECT_TRUE(timeline.take(EventPattern{"client", "answered", "17"}, 10s).has_value());
    EXPECT_TRUE(timeline.take(EventPattern{"callback", "onConnected", ""}, 10s).has_value());
    ASSERT_TRUE(client.waitIdle(10s));
    const std::string text = shown.str();
    const auto incoming = text.find("client → plug-in   onIncoming call=17 state=ringing(7)");
    const auto answer = text.find("plug-in → client   answerCall device=\"hid/vid_2f0c&pid_0a1b/SN1\"");
    const auto connected = text.find("client → plug-in   onConnected call=17 state=connected(9)");
    ASSERT_NE(incoming, std::string::npos) << text;
    ASSERT_NE(answer, std::string::npos) << text;
    ASSERT_NE(connected, std::string::npos) << text;
    EXPECT_LT(incoming, answer);
    EXPECT_LT(answer, connected);
}

TEST_F(ColloqSimModelClientTest, AfterStopThePluginsCallsAreNoLongerShown) {
    client.stop();
    const std::size_t before = timeline.eventsOf("plugin").size();
    table.answerCall(kDevice);
    EXPECT_EQ(timeline.eventsOf("plugin").size(), before);
    EXPECT_EQ(host.journal().countOf(hostharness::HostCall::AnswerCall), 1u);
}

}  // namespace
}  // namespace colloqsim
