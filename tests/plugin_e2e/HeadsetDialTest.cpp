#include "PluginEndToEnd.h"

namespace e2e {
namespace {

class HeadsetDial : public StartedWithOneHeadset {};

TEST_F(HeadsetDial, DialledNumberIsCalledOnTheClientsActiveDevice) {
    const uint64_t mark = clientMark();
    dial(headset, "5550100");
    const RecordedCall call = expectClientCall(HostCall::MakeCall, headset.path, mark);
    EXPECT_EQ(call.number, "5550100");
    expectPluginLine(ACCESSORY_LOG_TRACE, "BQL_COLLOQ_MAKE_CALL_EVENT put outbound call", mark);
}

TEST_F(HeadsetDial, AlternateNumberIsCalledWhenTheNumberIsEmpty) {
    const uint64_t mark = clientMark();
    dial(headset, "", "5550199");
    const RecordedCall call = expectClientCall(HostCall::MakeCall, headset.path, mark);
    EXPECT_EQ(call.number, "5550199");
}

TEST_F(HeadsetDial, EmptyNumberCallsNothing) {
    const uint64_t mark = clientMark();
    dial(headset, "");
    drainWorker();
    EXPECT_TRUE(clientCallsOf(HostCall::MakeCall, mark).empty());
    EXPECT_FALSE(hasPluginLine("BQL_COLLOQ_MAKE_CALL_EVENT put outbound call", mark));
}

}  // namespace
}  // namespace e2e
