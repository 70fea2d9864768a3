#include <gtest/gtest.h>

#include "ValidateOptions.h"

namespace colloqvalidate {
namespace {

TEST(ValidateOptions, DefaultsAreTheFullRun) {
    ValidateOptions options;
    ASSERT_EQ(parseOptions({}, &options), "");
    EXPECT_EQ(options.cycles, 200);
    EXPECT_EQ(options.dlopenCycles, 50);
    EXPECT_EQ(options.clientThreads, 8);
    EXPECT_EQ(options.uninitializeLimitMs, 3000);
    EXPECT_TRUE(options.hub);
    EXPECT_TRUE(options.names);
    EXPECT_EQ(options.nameLimitMs, 2000);
}

TEST(ValidateOptions, NamesCanBeLeftOutOrGivenAnotherLimit) {
    ValidateOptions options;
    ASSERT_EQ(parseOptions({"--no-names", "--name-limit-ms", "10000"}, &options), "");
    EXPECT_FALSE(options.names);
    EXPECT_EQ(options.nameLimitMs, 10000);
    EXPECT_EQ(parseOptions({"--name-limit-ms", "0"}, &options), "bad value for --name-limit-ms: \"0\"");
    EXPECT_EQ(options.nameLimitMs, 10000);
}

TEST(ValidateOptions, SizesSeedAndPathsAreRead) {
    ValidateOptions options;
    ASSERT_EQ(parseOptions({"--cycles", "7", "--dlopen-cycles", "3", "--storm-seconds", "12", "--seed", "42",
                            "--plugin", "/x/p.so", "--hub-sim", "/x/hub", "--no-hub"},
                           &options),
              "");
    EXPECT_EQ(options.cycles, 7);
    EXPECT_EQ(options.dlopenCycles, 3);
    EXPECT_EQ(options.stormSeconds, 12);
    EXPECT_EQ(options.seed, 42u);
    EXPECT_EQ(options.pluginPath, "/x/p.so");
    EXPECT_EQ(options.hubSimulatorPath, "/x/hub");
    EXPECT_FALSE(options.hub);
}

TEST(ValidateOptions, HostThreadsAreCollected) {
    ValidateOptions options;
    ASSERT_EQ(parseOptions({"--host-thread", "dispatch-main", "--host-thread", "ui"}, &options), "");
    EXPECT_EQ(options.hostThreads, (std::vector<std::string>{"dispatch-main", "ui"}));
    EXPECT_NE(parseOptions({"--host-thread", ""}, &options), "");
}

TEST(ValidateOptions, UnknownOptionIsRefusedByName) {
    ValidateOptions options;
    EXPECT_EQ(parseOptions({"--cylces", "3"}, &options), "unknown option --cylces");
}

TEST(ValidateOptions, NegativeOrNonNumericValueIsRefused) {
    ValidateOptions options;
    EXPECT_EQ(parseOptions({"--cycles", "-1"}, &options), "bad value for --cycles: \"-1\"");
    EXPECT_EQ(parseOptions({"--storm-seconds", "ten"}, &options), "bad value for --storm-seconds: \"ten\"");
    EXPECT_EQ(parseOptions({"--client-threads", "0"}, &options), "bad value for --client-threads: \"0\"");
    EXPECT_EQ(options.cycles, 200);
}

TEST(ValidateOptions, OptionWithoutItsValueIsNamed) {
    ValidateOptions options;
    EXPECT_EQ(parseOptions({"--seed"}, &options), "--seed needs a value");
}

TEST(ValidateOptions, HelpIsRecognised) {
    ValidateOptions options;
    ASSERT_EQ(parseOptions({"--help"}, &options), "");
    EXPECT_TRUE(options.help);
    EXPECT_NE(usageText().find("--storm-seconds"), std::string::npos);
    EXPECT_NE(usageText().find("--no-names"), std::string::npos);
    EXPECT_NE(usageText().find("--name-limit-ms"), std::string::npos);
}

}  // namespace
}  // namespace colloqvalidate
