// The client's log as WriteLog feeds it, through the plug-in instance and a client that binds
// only its logger.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeClient.h"
#include "PluginInstance.h"

namespace {

using bqltest::LocalLogEntry;
using fakeclient::ClientLogLine;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST(WriteLog, BeforeBindingNothingVisibleHappens) {
    PluginInstance instance;
    instance.plugin().WriteLog(ACCESSORY_LOG_MILESTONE, "Connected to Colloq successfully");
    EXPECT_THAT(fakeclient::logLines(), IsEmpty());
    EXPECT_THAT(instance.localLog(),
                Not(Contains(Field(&LocalLogEntry::message, HasSubstr("Connected to Colloq successfully")))));
}

TEST(WriteLog, AfterBindingForwardsPrefixVersionAndMessageWithNothingAdded) {
    PluginInstance instance;
    ASSERT_EQ(instance.bindClientLogger(), -1);  // the client refuses the callbacks
    fakeclient::clearLog();
    instance.plugin().WriteLog(ACCESSORY_LOG_MILESTONE, "Connected to Colloq successfully");
    EXPECT_THAT(fakeclient::logLines(),
                ElementsAre(ClientLogLine{ACCESSORY_LOG_MILESTONE,
                                          "BQLColloqPlugin v.3.8.51535.41614: Connected to Colloq successfully"}));
}

TEST(WriteLog, ConversionsReachTheClientAsWrittenWithoutTheCallersValues) {
    PluginInstance instance;
    ASSERT_EQ(instance.bindClientLogger(), -1);
    fakeclient::clearLog();
    instance.plugin().WriteLog(ACCESSORY_LOG_TRACE, "processVexilEvent(EventPtr comeEvent): CallID = %d", 42);
    EXPECT_THAT(fakeclient::logLines(),
                ElementsAre(ClientLogLine{
                    ACCESSORY_LOG_TRACE,
                    "BQLColloqPlugin v.3.8.51535.41614: processVexilEvent(EventPtr comeEvent): CallID = %d"}));
}

TEST(WriteLog, NeverWritesToTheLocalLog) {
    PluginInstance instance;
    ASSERT_EQ(instance.bindClientLogger(), -1);
    instance.plugin().WriteLog(ACCESSORY_LOG_FAILURE, "only for the client");
    EXPECT_THAT(instance.localLog(), Not(Contains(Field(&LocalLogEntry::message, HasSubstr("only for the client")))));
}

}  // namespace
