// The simulator's command line: what each option sets, the output style chosen for a terminal
// or a pipe, and one-line reasons for arguments it cannot use.
#include <gtest/gtest.h>

#include "Options.h"

namespace colloqsim {
namespace {

struct Parsed {
    bool ok = false;
    Options options;
    std::string error;
};

Parsed parse(const std::vector<std::string>& arguments) {
    Parsed parsed;
    parsed.ok = parseOptions(arguments, &parsed.options, &parsed.error);
    return parsed;
}

TEST(ColloqSimOptions, WithoutAStyleOptionOnlyATerminalGetsColour) {
    EXPECT_EQ(chooseStyle(std::nullopt, true), OutputStyle::Colour);
    EXPECT_EQ(chooseStyle(std::nullopt, false), OutputStyle::Plain);
}

TEST(ColloqSimOptions, AStyleAskedForWinsOverTheTerminal) {
    EXPECT_EQ(chooseStyle(OutputStyle::Plain, true), OutputStyle::Plain);
    EXPECT_EQ(chooseStyle(OutputStyle::Json, true), OutputStyle::Json);
    EXPECT_EQ(chooseStyle(OutputStyle::Colour, false), OutputStyle::Colour);
}

TEST(ColloqSimOptions, StyleLogAndScenarioOptionsAreRead) {
    const Parsed parsed = parse({"--json", "--log", "--plugin", "/p/lib.so", "--timeout", "250", "run.scenario"});
    ASSERT_TRUE(parsed.ok) << parsed.error;
    EXPECT_EQ(parsed.options.style.value_or(OutputStyle::Plain), OutputStyle::Json);
    EXPECT_TRUE(parsed.options.showLog);
    EXPECT_EQ(parsed.options.pluginPath, "/p/lib.so");
    EXPECT_EQ(parsed.options.expectTimeout.count(), 250);
    EXPECT_EQ(parsed.options.scenario, "run.scenario");
    EXPECT_FALSE(parsed.options.interactive);
}

TEST(ColloqSimOptions, WithoutAScenarioTheSimulatorPrompts) {
    const Parsed parsed = parse({"--plain"});
    ASSERT_TRUE(parsed.ok) << parsed.error;
    EXPECT_TRUE(parsed.options.interactive);
    EXPECT_FALSE(parse({}).options.style.has_value());
}

TEST(ColloqSimOptions, AnUnknownOptionPointsToHelp) {
    const Parsed parsed = parse({"--frobnicate"});
    EXPECT_FALSE(parsed.ok);
    EXPECT_EQ(parsed.error, "unknown option --frobnicate (try --help)");
}

TEST(ColloqSimOptions, AnOptionWithoutItsValueIsNamed) {
    const Parsed parsed = parse({"--plugin"});
    EXPECT_FALSE(parsed.ok);
    EXPECT_EQ(parsed.error, "--plugin needs a value");
}

TEST(ColloqSimOptions, TimeOutsTakeMillisecondsOnly) {
    EXPECT_EQ(parse({"--timeout", "soon"}).error, "--timeout takes milliseconds, not \"soon\"");
    EXPECT_EQ(parse({"--unload-timeout", "-5"}).error, "--unload-timeout takes milliseconds, not \"-5\"");
    EXPECT_EQ(parse({"--timeout", "12ms"}).error, "--timeout takes milliseconds, not \"12ms\"");
    const Parsed parsed = parse({"--unload-timeout", "300", "a.scenario"});
    ASSERT_TRUE(parsed.ok) << parsed.error;
    EXPECT_EQ(parsed.options.unloadTimeout.count(), 300);
}

TEST(ColloqSimOptions, OneScenarioARun) {
    const Parsed parsed = parse({"a.scenario", "b.scenario"});
    EXPECT_FALSE(parsed.ok);
    EXPECT_EQ(parsed.error, "one scenario a run, please (a fresh process gives each a fresh plug-in)");
}

TEST(ColloqSimOptions, CheckingNeedsAScenario) {
    EXPECT_EQ(parse({"--check"}).error, "--check needs a scenario file");
    EXPECT_TRUE(parse({"--check", "a.scenario"}).options.checkOnly);
}

}  // namespace
}  // namespace colloqsim
