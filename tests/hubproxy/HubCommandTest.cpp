#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "HubCommand.h"

namespace {

HubCommand Parsed(const std::string& line) {
    HubCommand command;
    std::string error;
    EXPECT_TRUE(ParseCommand(line, command, error)) << line << ": " << error;
    return command;
}

std::string ErrorOf(const std::string& line) {
    HubCommand command;
    std::string error;
    EXPECT_FALSE(ParseCommand(line, command, error)) << line;
    return error;
}

TEST(HubCommand, EveryHeadsetActionNameSendsItsCode) {
    const std::vector<std::pair<std::string, uint32_t>> actions = {
        {"device-selected", 1}, {"foreground", 2}, {"foreground-when-idle", 3}, {"foreground-alt", 4},
        {"foreground-when-idle-alt", 5}, {"accept", 6}, {"terminate", 7}, {"terminate-alt", 8},
        {"hold", 9}, {"resume", 10}, {"mute", 11}, {"unmute", 12}, {"dtmf", 13}, {"reject", 14},
        {"device-change", 19}};
    for (const auto& [name, code] : actions) {
        const HubCommand command = Parsed(name);
        EXPECT_EQ(command.kind, HubCommand::Kind::HeadsetEvent) << name;
        EXPECT_EQ(command.state, code) << name;
    }
}

TEST(HubCommand, CodesThePlugInSendsAreNoHeadsetActions) {
    EXPECT_EQ(ErrorOf("incoming"), "unknown command 'incoming' (try help)");
    EXPECT_EQ(ErrorOf("device-request"), "unknown command 'device-request' (try help)");
}

TEST(HubCommand, HeadsetEventTakesCallIdDeviceAndBothTexts) {
    const HubCommand command = Parsed("dtmf call=42 device=hid/vid_2f0c&pid_0a1b/SN1 extra=first keys=12#");

    EXPECT_EQ(command.callId, 42);
    EXPECT_EQ(command.device, std::optional<std::string>("hid/vid_2f0c&pid_0a1b/SN1"));
    EXPECT_EQ(command.extra, "first");
    EXPECT_EQ(command.keys, "12#");
}

TEST(HubCommand, HeadsetEventWithoutDeviceLeavesItToTheSimulator) {
    const HubCommand command = Parsed("accept");

    EXPECT_FALSE(command.device.has_value());
    EXPECT_EQ(command.callId, 0);
}

TEST(HubCommand, QuotesKeepBlanksAndTakeEscapedQuotes) {
    const HubCommand command = Parsed(R"(device-change keys="Model 5.1-X.2" extra="say \"hi\" \\ ok" device="")");

    EXPECT_EQ(command.keys, "Model 5.1-X.2");
    EXPECT_EQ(command.extra, R"(say "hi" \ ok)");
    EXPECT_EQ(command.device, std::optional<std::string>(""));
}

TEST(HubCommand, EventTakesAnyThirtyTwoBitCode) {
    EXPECT_EQ(Parsed("event 0").state, 0u);
    EXPECT_EQ(Parsed("event 4294967295 call=-1").state, 4294967295u);
    EXPECT_EQ(Parsed("event 0x20").state, 32u);
    EXPECT_EQ(Parsed("event 4294967295 call=-1").callId, -1);
}

TEST(HubCommand, DialTakesTheNumberAsOneWord) {
    const HubCommand command = Parsed("dial \"+49 30 1234\"");

    EXPECT_EQ(command.kind, HubCommand::Kind::Dial);
    EXPECT_EQ(command.number, "+49 30 1234");
}

TEST(HubCommand, DeviceCommandsAndControl) {
    const HubCommand active = Parsed("active hid/vid_2f0c&pid_0001/A");
    EXPECT_EQ(active.kind, HubCommand::Kind::SetActive);
    EXPECT_EQ(active.device, std::optional<std::string>("hid/vid_2f0c&pid_0001/A"));
    EXPECT_EQ(Parsed("no-active").kind, HubCommand::Kind::ClearActive);
    EXPECT_EQ(Parsed("report").kind, HubCommand::Kind::Report);
    EXPECT_EQ(Parsed("quit").kind, HubCommand::Kind::Quit);
    EXPECT_EQ(Parsed("help").kind, HubCommand::Kind::Help);
    const HubCommand sleep = Parsed("sleep 250");
    EXPECT_EQ(sleep.kind, HubCommand::Kind::Sleep);
    EXPECT_EQ(sleep.pause, std::chrono::milliseconds(250));
}

TEST(HubCommand, EmptyAndCommentLinesDoNothing) {
    EXPECT_EQ(Parsed("").kind, HubCommand::Kind::Nothing);
    EXPECT_EQ(Parsed("   \t").kind, HubCommand::Kind::Nothing);
    EXPECT_EQ(Parsed("# dial 123").kind, HubCommand::Kind::Nothing);
    EXPECT_EQ(Parsed("hold call=3 # on hold").callId, 3);
}

TEST(HubCommand, MistakesAreDescribed) {
    EXPECT_EQ(ErrorOf("ring"), "unknown command 'ring' (try help)");
    EXPECT_EQ(ErrorOf("hold line=2"), "unknown option 'line' (call, device, extra, keys)");
    EXPECT_EQ(ErrorOf("hold 2"), "expected key=value, got '2'");
    EXPECT_EQ(ErrorOf("hold call=x"), "call id is not a 32-bit number: 'x'");
    EXPECT_EQ(ErrorOf("hold call=2147483648"), "call id is not a 32-bit number: '2147483648'");
    EXPECT_EQ(ErrorOf("dial \"123"), "unterminated quote");
    EXPECT_EQ(ErrorOf("dial"), "'dial' takes 1 argument(s)");
    EXPECT_EQ(ErrorOf("report now"), "'report' takes 0 argument(s)");
    EXPECT_EQ(ErrorOf("event"), "'event' takes a code from 0 to 4294967295, then options");
    EXPECT_EQ(ErrorOf("event -1"), "'event' takes a code from 0 to 4294967295, then options");
    EXPECT_EQ(ErrorOf("sleep soon"), "'sleep' takes milliseconds, at most one day");
}

}  // namespace
