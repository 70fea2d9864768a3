// The timeline: its printers and how expectations take events from it.
#include <cstdio>
#include <sstream>
#include <thread>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "HubDriver.h"
#include "ModelClient.h"
#include "RuntimeWatcher.h"
#include "Timeline.h"

namespace colloqsim {
namespace {

using namespace std::chrono_literals;

TimelineEvent event(const std::string& subject, const std::string& verb, const std::string& argument,
                    const std::string& text, Direction direction = Direction::PluginToHeadset) {
    TimelineEvent made;
    made.direction = direction;
    made.subject = subject;
    made.verb = verb;
    made.argument = argument;
    made.text = text;
    return made;
}

// Screen columns before `text` in `line`: UTF-8 continuation bytes take none.
std::size_t columnsBefore(const std::string& line, const std::string& text) {
    std::size_t columns = 0;
    for (const unsigned char c : line.substr(0, line.find(text))) {
        columns += (c & 0xC0) != 0x80 ? 1 : 0;
    }
    return columns;
}

TEST(ColloqSimTimeline, PlainLinesShowMillisecondsDirectionAndText) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Plain, out), false);
    timeline.record(event("headset", "rings", "17", "incomingCall call=17"));
    const std::string line = out.str();
    EXPECT_NE(line.find(" ms  plug-in → headset  incomingCall call=17\n"), std::string::npos) << line;
    EXPECT_EQ(line.find('\033'), std::string::npos);
}

TEST(ColloqSimTimeline, ColourLinesAreWrappedInEscapes) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Colour, out), false);
    timeline.record(event("headset", "rings", "17", "incomingCall call=17"));
    EXPECT_EQ(out.str().rfind("\033[33m", 0), 0u);
    EXPECT_NE(out.str().find("\033[0m\n"), std::string::npos);
}

TEST(ColloqSimTimeline, JsonLinesCarryEveryFieldEscaped) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Json, out), false);
    timeline.record(event("client", "answered", "17", "say \"hi\"\\", Direction::Client));
    const std::string line = out.str();
    EXPECT_NE(line.find("\"direction\":\"client\""), std::string::npos) << line;
    EXPECT_NE(line.find("\"verb\":\"answered\",\"argument\":\"17\""), std::string::npos) << line;
    EXPECT_NE(line.find("\"text\":\"say \\\"hi\\\"\\\\\"}"), std::string::npos) << line;
}

TEST(ColloqSimTimeline, LogLinesArePrintedOnlyWhenAskedButKeptForExpectations) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Plain, out), false);
    timeline.record(event("log", "line", "", "[4] Connected", Direction::ClientLog));
    EXPECT_EQ(out.str(), "");
    EXPECT_TRUE(timeline.take(EventPattern{"log", "line", "Connected"}, 0ms).has_value());
}

TEST(ColloqSimTimeline, WithTheLogShownLogLinesArePrintedWithTheirSeverity) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Plain, out), true);
    hostharness::RecordedCall line;
    line.call = hostharness::HostCall::Log;
    line.severity = ACCESSORY_LOG_FAILURE;
    line.text = "endCall fails";
    timeline.record(describeOperation(line));
    EXPECT_NE(out.str().find(" ms  client log         [failure 1] endCall fails\n"), std::string::npos) << out.str();
}

TEST(ColloqSimTimeline, JsonLogLinesCarryTheirSeverity) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Json, out), true);
    hostharness::RecordedCall line;
    line.call = hostharness::HostCall::Log;
    line.severity = ACCESSORY_LOG_TRACE;
    line.text = "into pluginThread()";
    timeline.record(describeOperation(line));
    EXPECT_NE(out.str().find("\"direction\":\"client-log\""), std::string::npos) << out.str();
    EXPECT_NE(out.str().find(",\"severity\":5}"), std::string::npos) << out.str();
}

TEST(ColloqSimTimeline, EveryDirectionHasItsArrowAndItsJsonName) {
    const std::vector<std::tuple<Direction, std::string, std::string>> expected = {
        {Direction::ClientToPlugin, "client → plug-in", "client-to-plugin"},
        {Direction::PluginToClient, "plug-in → client", "plugin-to-client"},
        {Direction::PluginToHeadset, "plug-in → headset", "plugin-to-headset"},
        {Direction::HeadsetToPlugin, "headset → plug-in", "headset-to-plugin"},
        {Direction::HubToPlugin, "hub → plug-in", "hub-to-plugin"},
        {Direction::PluginToHub, "plug-in → hub", "plugin-to-hub"},
        {Direction::ClientLog, "client log", "client-log"},
        {Direction::Client, "client", "client"},
        {Direction::Note, "simulator", "simulator"},
    };
    for (const auto& [direction, text, key] : expected) {
        EXPECT_EQ(directionText(direction), text);
        EXPECT_EQ(directionKey(direction), key);
        std::ostringstream out;
        Timeline timeline(makePrinter(OutputStyle::Plain, out), true);
        timeline.record(event("x", "y", "", "what crossed", direction));
        // The text starts in the same column whatever the direction's width.
        EXPECT_NE(out.str().find(" ms  " + text), std::string::npos) << out.str();
        EXPECT_EQ(columnsBefore(out.str(), "what crossed"), 31u) << out.str();
    }
}

TEST(ColloqSimTimeline, TakeReturnsTheOldestMatchOnlyOnce) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Plain, out), false);
    timeline.record(event("headset", "rings", "17", "first"));
    timeline.record(event("headset", "rings", "17", "second"));
    const auto first = timeline.take(EventPattern{"headset", "rings", "17"}, 0ms);
    const auto second = timeline.take(EventPattern{"headset", "rings", ""}, 0ms);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->text, "first");
    EXPECT_EQ(second->text, "second");
    EXPECT_FALSE(timeline.take(EventPattern{"headset", "rings", "17"}, 0ms).has_value());
}

TEST(ColloqSimTimeline, TakeWaitsForAnEventRecordedLater) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Plain, out), false);
    std::thread later([&timeline] { timeline.record(event("headset", "ended", "17", "terminateCall")); });
    EXPECT_TRUE(timeline.take(EventPattern{"headset", "ended", "17"}, 10s).has_value());
    later.join();
}

TEST(ColloqSimTimeline, ActivityCountsOnlyTheClientThePluginAndTheHeadsets) {
    std::ostringstream out;
    Timeline timeline(makePrinter(OutputStyle::Plain, out), false);
    timeline.note("a remark");
    timeline.record(event("log", "line", "", "x", Direction::ClientLog));
    timeline.record(event("hub", "sent", "dtmf", "x", Direction::HubToPlugin));
    EXPECT_EQ(timeline.activity(), 0u);
    timeline.record(event("headset", "rings", "17", "x"));
    EXPECT_EQ(timeline.activity(), 1u);
}

TEST(ColloqSimClientLog, LogLinesShowTheSeverityByNameAndNumber) {
    hostharness::RecordedCall line;
    line.call = hostharness::HostCall::Log;
    line.severity = ACCESSORY_LOG_MILESTONE;
    line.text = "Connected to Colloq successfully";
    const TimelineEvent shown = describeOperation(line);
    EXPECT_EQ(shown.direction, Direction::ClientLog);
    EXPECT_EQ(shown.text, "[milestone 4] Connected to Colloq successfully");
    EXPECT_EQ(shown.severity, 4);
}

TEST(ColloqSimRuntimeCommands, AnIncomingCallCommandMeansTheHeadsetRings) {
    VexilCtlCommand command{};
    command.command = VEXILCTL_CMD_INCOMING_CALL;
    command.callId = 17;
    command.hasContact = 1;
    std::snprintf(command.contactName, sizeof command.contactName, "Ann");
    const TimelineEvent shown = describeCommand(command);
    EXPECT_EQ(shown.subject, "headset");
    EXPECT_EQ(shown.verb, "rings");
    EXPECT_EQ(shown.argument, "17");
    EXPECT_NE(shown.text.find("incomingCall call=17 name=\"Ann\""), std::string::npos);
}

TEST(ColloqSimRuntimeCommands, ARefusedCommandDoesNotCountAsDone) {
    VexilCtlCommand command{};
    command.command = VEXILCTL_CMD_HOLD_CALL;
    command.callId = 17;
    command.status = 5;
    const TimelineEvent shown = describeCommand(command);
    EXPECT_EQ(shown.verb, "refused");
    EXPECT_NE(shown.text.find("refused with status 5"), std::string::npos);
}

TEST(ColloqSimHubLines, ARecordThePluginSentAboutACallIsTheHeadsets) {
    const TimelineEvent shown = describeHubLine(
        R"({"direction":"received","messageType":0,"messageTypeName":"call","callState":15,"callStateName":"incoming","deviceAction":0,"callId":17,"devicePath":"","contactName":"Ann","phoneNumber":"555","extraText":"","dtmfKeys":"","productId":0})");
    EXPECT_EQ(shown.direction, Direction::PluginToHub);
    EXPECT_EQ(shown.subject, "headset");
    EXPECT_EQ(shown.verb, "rings");
    EXPECT_EQ(shown.argument, "17");
}

TEST(ColloqSimHubLines, ARecordTheHubSentIsTheHubsWithItsStateName) {
    const TimelineEvent shown = describeHubLine(
        R"({"direction":"sent","messageType":0,"messageTypeName":"call","callState":6,"callStateName":"accept","deviceAction":0,"callId":17,"devicePath":"p","contactName":"","phoneNumber":"","extraText":"","dtmfKeys":"","productId":0})");
    EXPECT_EQ(shown.direction, Direction::HubToPlugin);
    EXPECT_EQ(shown.subject, "hub");
    EXPECT_EQ(shown.verb, "sent");
    EXPECT_EQ(shown.argument, "accept");
}

TEST(ColloqSimHubLines, ButtonWordsBecomeTheHubsActions) {
    EXPECT_EQ(HubDriver::actionWord("answer"), "accept");
    EXPECT_EQ(HubDriver::actionWord("end"), "terminate");
    EXPECT_EQ(HubDriver::actionWord("device-change"), "device-change");
    EXPECT_EQ(HubDriver::actionWord("explode"), "");
}

}  // namespace
}  // namespace colloqsim
