#include "PluginEndToEnd.h"

namespace e2e {
namespace {

class Dtmf : public StartedWithOneHeadset {
protected:
    void SetUp() override {
        StartedWithOneHeadset::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        connectIncomingCall(37, "5550037", "Kim");
    }
};

TEST_F(Dtmf, KeysReachTheClientOneByOneInOrder) {
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_DTMF_KEY, 37, "12#");
    expectClientCall(HostCall::SendDtmf, headset.path, mark);
    drainWorker();

    const auto keys = clientCallsOf(HostCall::SendDtmf, mark);
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0].key, '1');
    EXPECT_EQ(keys[1].key, '2');
    EXPECT_EQ(keys[2].key, '#');
    for (const RecordedCall& key : keys) {
        EXPECT_EQ(key.device, headset.path);
    }
    expectPluginLine(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_DTMF_KEY: %s", mark);
}

TEST_F(Dtmf, NoKeyValueSendsNothing) {
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_DTMF_KEY, 37, "255");
    drainWorker();
    expectPluginLine(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): case: CALL_STATE_DTMF_KEY: %s", mark);
    EXPECT_TRUE(clientCallsOf(HostCall::SendDtmf, mark).empty());
}

}  // namespace
}  // namespace e2e
