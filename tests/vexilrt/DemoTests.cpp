// The demo program tells its story against the runtime, and ends with a clear message and a
// non-zero exit when a runtime operation fails.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace vexiltest {
namespace {

struct DemoRun {
    int exitCode = -1;
    std::string output;
};

DemoRun runDemo(const std::string& arguments) {
    DemoRun run;
    const std::string command = std::string("'") + VEXIL_DEMO_PATH + "' " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return run;
    }
    char chunk[512];
    while (std::fgets(chunk, sizeof chunk, pipe) != nullptr) {
        run.output += chunk;
    }
    const int status = pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

TEST(VexilDemo, TellsTheWholeStoryWithEveryEventOnTheRuntimesThread) {
    const DemoRun run = runDemo("");
    EXPECT_EQ(0, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("vexil-events     heard: headset attached:")) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("vexil-events     heard: headset button ACCEPT_CALL (1) for call 1"))
        << run.output;
    EXPECT_NE(std::string::npos, run.output.find("vexil-events     heard: call request for \"+1 555 0100\""))
        << run.output;
    EXPECT_NE(std::string::npos, run.output.find("vexil-events     heard: headset removed:")) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("Done: 4 events arrived, all on the runtime's thread \"vexil-events\""))
        << run.output;
}

TEST(VexilDemo, AFailedStatusEndsTheStoryNamingTheOperation) {
    const DemoRun run = runDemo("--fail ICallCommand::holdCall");
    EXPECT_EQ(1, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("vexil-demo: holdCall returned -1, expected 0")) << run.output;
    EXPECT_EQ(std::string::npos, run.output.find("Done:")) << run.output;
}

TEST(VexilDemo, RejectsUnknownArguments) {
    EXPECT_EQ(2, runDemo("--fail ICallCommand::nothing").exitCode);
    EXPECT_EQ(2, runDemo("--loud").exitCode);
}

}  // namespace
}  // namespace vexiltest
