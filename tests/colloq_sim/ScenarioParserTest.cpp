// The scenario language: what each command reads into, and errors that name file, line and
// problem.
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ScenarioParser.h"
#include "Tokenizer.h"

namespace colloqsim {
namespace {

ScenarioCommand parsed(const std::string& line) {
    const LineResult result = parseLine(line, "test.scenario", 1);
    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(result.command.has_value()) << line;
    return result.command.value_or(ScenarioCommand{});
}

std::string errorOf(const std::string& line, int number = 3) {
    return parseLine(line, "broken.scenario", number).error;
}

TEST(ColloqSimTokenizer, QuotesKeepBlanksAndEscapes) {
    std::vector<std::string> words;
    std::string error;
    ASSERT_TRUE(tokenize(R"(client incoming 17 "555 1234" "Ann \"A\" Smith")", &words, &error));
    ASSERT_EQ(words.size(), 5u);
    EXPECT_EQ(words[3], "555 1234");
    EXPECT_EQ(words[4], "Ann \"A\" Smith");
}

TEST(ColloqSimTokenizer, AHashStartsACommentOnlyAtTheStartOfAWord) {
    std::vector<std::string> words;
    std::string error;
    ASSERT_TRUE(tokenize(R"(keys A 12# 17 # a comment "#")", &words, &error));
    EXPECT_EQ(words, (std::vector<std::string>{"keys", "A", "12#", "17"}));
    ASSERT_TRUE(tokenize(R"(keys A "#")", &words, &error));
    EXPECT_EQ(words.back(), "#");
}

TEST(ColloqSimTokenizer, AnOpenQuoteIsAnError) {
    std::vector<std::string> words;
    std::string error;
    EXPECT_FALSE(tokenize(R"(client incoming 17 "555)", &words, &error));
    EXPECT_EQ(error, "a quoted text is not closed");
    EXPECT_TRUE(words.empty());
}

TEST(ColloqSimScenarioParser, BlankAndCommentLinesGiveNoCommandAndNoError) {
    for (const char* line : {"", "   ", "# only a comment"}) {
        const LineResult result = parseLine(line, "f", 1);
        EXPECT_FALSE(result.command.has_value());
        EXPECT_EQ(result.error, "");
    }
}

TEST(ColloqSimScenarioParser, PlugReadsItsOptions) {
    const ScenarioCommand command = parsed(R"(plug B model "Model 7.2" product 0C2D serial SN2 display no)");
    EXPECT_EQ(command.action, Action::Plug);
    EXPECT_EQ(command.headset, "B");
    EXPECT_EQ(command.plugged.model, "Model 7.2");
    EXPECT_EQ(command.plugged.productId, 0x0c2d);
    EXPECT_EQ(command.serial, "SN2");
    EXPECT_FALSE(command.plugged.hasDisplay);
}

TEST(ColloqSimScenarioParser, ClientIncomingReadsIdNumberAndName) {
    const ScenarioCommand command = parsed(R"(client incoming 17 5551234 "Ann Smith")");
    EXPECT_EQ(command.action, Action::ClientIncoming);
    EXPECT_EQ(command.call, 17);
    EXPECT_EQ(command.number, "5551234");
    EXPECT_EQ(command.name, "Ann Smith");
}

TEST(ColloqSimScenarioParser, PressTakesAnOptionalCall) {
    EXPECT_EQ(parsed("press A answer 17").call, 17);
    EXPECT_EQ(parsed("press A mute").call, -1);
    EXPECT_EQ(parsed("press A mute").word, "mute");
}

TEST(ColloqSimScenarioParser, ExpectReadsSubjectVerbArgumentAndTimeOut) {
    const ScenarioCommand command = parsed("expect headset rings 17 within 250");
    EXPECT_EQ(command.action, Action::Expect);
    EXPECT_EQ(command.pattern.subject, "headset");
    EXPECT_EQ(command.pattern.verb, "rings");
    EXPECT_EQ(command.pattern.argument, "17");
    ASSERT_TRUE(command.within.has_value());
    EXPECT_EQ(command.within->count(), 250);
    EXPECT_FALSE(parsed("expect client muted").within.has_value());
}

TEST(ColloqSimScenarioParser, ExpectLogMatchesAText) {
    const ScenarioCommand command = parsed(R"(expect log "Connected to VexilRT successfully")");
    EXPECT_EQ(command.pattern.subject, "log");
    EXPECT_EQ(command.pattern.argument, "Connected to VexilRT successfully");
}

TEST(ColloqSimScenarioParser, HubEventReadsCallKeysAndDevice) {
    const ScenarioCommand command = parsed("hub dtmf 17 keys 12# device A");
    EXPECT_EQ(command.action, Action::HubEvent);
    EXPECT_EQ(command.word, "dtmf");
    EXPECT_EQ(command.call, 17);
    EXPECT_EQ(command.number, "12#");
    EXPECT_EQ(command.headset, "A");
}

TEST(ColloqSimScenarioParser, EveryCommandOfTheLanguageIsRead) {
    const std::vector<std::pair<const char*, Action>> lines = {
        {"mode direct", Action::Mode},
        {"start", Action::Start},
        {"plug A", Action::Plug},
        {"unplug A", Action::Unplug},
        {"press A reject 17", Action::Press},
        {"keys A 12# 17", Action::Keys},
        {"dial A 5550199", Action::Dial},
        {"client device A", Action::ClientDevice},
        {"client incoming 17 5551234", Action::ClientIncoming},
        {"client waiting 18 5550000 Bob", Action::ClientWaiting},
        {"client outgoing 20 5550100", Action::ClientOutgoing},
        {"client remote-answers 20", Action::RemoteAnswers},
        {"client remote-hangs-up 20", Action::RemoteHangsUp},
        {"client remote-busy 20", Action::RemoteBusy},
        {"client answers 17", Action::UserAnswers},
        {"client hangs-up 17", Action::UserHangsUp},
        {"client holds 17", Action::UserHolds},
        {"client resumes 17", Action::UserResumes},
        {"client mutes", Action::UserMutes},
        {"client unmutes", Action::UserUnmutes},
        {"hub answer 17", Action::HubEvent},
        {"hub dial 5550199", Action::HubDial},
        {"hub active A", Action::HubActive},
        {R"(hub send "device-change device=\"p\"")", Action::HubSend},
        {"wait idle", Action::WaitIdle},
        {"expect client answered 17 within 100", Action::Expect},
    };
    for (const auto& [line, action] : lines) {
        EXPECT_EQ(parsed(line).action, action) << line;
    }
}

TEST(ColloqSimScenarioParser, EveryHeadsetButtonIsKnown) {
    for (const char* button : {"answer", "end", "reject", "hold", "resume", "mute", "unmute", "select"}) {
        EXPECT_EQ(parsed(std::string("press A ") + button).word, button);
    }
}

TEST(ColloqSimScenarioParser, HubDialActiveAndSendKeepTheirArgument) {
    EXPECT_EQ(parsed("hub dial 5550199").word, "5550199");
    EXPECT_EQ(parsed("hub active B").headset, "B");
    EXPECT_EQ(parsed(R"(hub send "dial number=\"1\"")").word, R"(dial number="1")");
    EXPECT_EQ(errorOf("hub explode"), "broken.scenario:3: unknown hub action \"explode\"");
}

TEST(ColloqSimScenarioParser, ModeAndWaitTakeOnlyTheirWords) {
    EXPECT_TRUE(parsed("mode hub").hubMode);
    EXPECT_FALSE(parsed("mode direct").hubMode);
    EXPECT_EQ(errorOf("mode bluetooth"), "broken.scenario:3: mode must be direct or hub, not \"bluetooth\"");
    EXPECT_EQ(errorOf("wait 500"),
              "broken.scenario:3: wait takes only idle; expectations wait for what they expect");
}

TEST(ColloqSimScenarioParser, UnknownClientActionListsTheActions) {
    EXPECT_EQ(errorOf("client explodes").rfind("broken.scenario:3: unknown client action \"explodes\" (device ", 0),
              0u);
}

TEST(ColloqSimScenarioParser, UnknownCommandNamesFileLineAndWord) {
    EXPECT_EQ(errorOf("ring A 17", 7), "broken.scenario:7: unknown command \"ring\" (try help)");
}

TEST(ColloqSimScenarioParser, UnknownButtonListsTheButtons) {
    EXPECT_EQ(errorOf("press A explode 17"),
              "broken.scenario:3: unknown button \"explode\" (answer end reject hold resume mute unmute select)");
}

TEST(ColloqSimScenarioParser, MissingArgumentsAreNamed) {
    EXPECT_EQ(errorOf("client incoming 17"), "broken.scenario:3: missing number");
    EXPECT_EQ(errorOf("plug"), "broken.scenario:3: missing headset name");
    EXPECT_EQ(errorOf("expect"), "broken.scenario:3: missing subject (client, headset, plugin, hub, log)");
}

TEST(ColloqSimScenarioParser, ACallIdMustBeANumber) {
    EXPECT_EQ(errorOf("client answers seventeen"),
              "broken.scenario:3: call id must be a number from -1 to 2147483647, not \"seventeen\"");
}

TEST(ColloqSimScenarioParser, ExpectationsOnlyTakeKnownVerbs) {
    EXPECT_EQ(errorOf("expect headset explodes 17").rfind("broken.scenario:3: cannot expect headset \"explodes\" (", 0),
              0u);
    EXPECT_EQ(errorOf("expect phone rings"),
              "broken.scenario:3: unknown subject \"phone\" (client, headset, plugin, hub, log)");
}

TEST(ColloqSimScenarioParser, ExtraWordsAreRefused) {
    EXPECT_EQ(errorOf("client mutes now"), "broken.scenario:3: unexpected \"now\" at the end");
}

TEST(ColloqSimScenarioParser, BadPlugOptionsAreRefused) {
    EXPECT_EQ(errorOf("plug A product xyz"),
              "broken.scenario:3: product id must be 1 to 4 hexadecimal digits, not \"xyz\"");
    EXPECT_EQ(errorOf("plug A display maybe"), "broken.scenario:3: display must be yes or no, not \"maybe\"");
    EXPECT_EQ(errorOf("plug A colour red"),
              "broken.scenario:3: unknown plug option \"colour\" (model, product, serial, display)");
}

TEST(ColloqSimScenarioParser, AnOpenQuoteIsReportedWithItsLine) {
    EXPECT_EQ(errorOf(R"(client incoming 17 "555)", 9), "broken.scenario:9: a quoted text is not closed");
}

TEST(ColloqSimScenarioParser, EveryErrorOfAFileIsReportedWithItsLine) {
    Scenario scenario;
    const std::vector<std::string> errors =
        parseScenario("plug A\n\nfrobnicate\nclient device A\nmode hub\nwait a while\n", "s.scenario", &scenario);
    ASSERT_EQ(errors.size(), 3u);
    EXPECT_EQ(errors[0], "s.scenario:3: unknown command \"frobnicate\" (try help)");
    EXPECT_EQ(errors[1], "s.scenario:5: mode must come before every other command");
    EXPECT_EQ(errors[2].rfind("s.scenario:6: ", 0), 0u);
}

TEST(ColloqSimScenarioParser, AGoodFileGivesItsCommandsInOrderWithTheirLines) {
    Scenario scenario;
    const std::vector<std::string> errors =
        parseScenario("mode hub\n# comment\nplug A\nexpect headset rings 17\n", "s.scenario", &scenario);
    EXPECT_TRUE(errors.empty());
    ASSERT_EQ(scenario.commands.size(), 3u);
    EXPECT_TRUE(scenario.commands[0].hubMode);
    EXPECT_EQ(scenario.commands[1].line, 3);
    EXPECT_EQ(scenario.commands[2].where(), "s.scenario:4");
}

TEST(ColloqSimScenarioParser, AMissingFileIsOneErrorNamingIt) {
    Scenario scenario;
    const std::vector<std::string> errors = parseScenarioFile("/nonexistent/none.scenario", &scenario);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0], "/nonexistent/none.scenario: cannot read the scenario: No such file or directory");
}

}  // namespace
}  // namespace colloqsim
