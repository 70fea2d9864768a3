// The direct handler's device lookups by walking the runtime's device list: by product id,
// by exact path, and by the name in a client identifier used as a pattern.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "DirectHandlerFixture.h"
#include "vexilctl/VexilControl.h"

namespace {

using bqltest::LocalLogEntry;
using ::testing::ElementsAre;

class VexilDeviceLookup : public DirectHandlerTest {
protected:
    void connect() { ASSERT_EQ(handler().connectToVexil(&queue), 0); }

    static std::string runtimeActiveDevice() {
        char path[VEXILCTL_PATH_BYTES] = {};
        EXPECT_EQ(vexilctl_get_active_device(path, sizeof path), VEXILCTL_OK);
        return path;
    }
};

LocalLogEntry debugLine(const char* function, const std::string& message) { return {"DEBUG", function, message}; }

TEST_F(VexilDeviceLookup, SetActiveDeviceMakesTheDeviceWithTheProductIdActive) {
    plug(0x1a2b, "A1", "Model 5", false);
    const std::string second = plug(0x0c3d, "B2", "Model 7", false);
    ASSERT_NO_FATAL_FAILURE(connect());

    handler().setActiveDevice("0c3d");
    EXPECT_EQ(runtimeActiveDevice(), second);
    EXPECT_THAT(log.entriesOf("setActiveDevice"),
                ElementsAre(debugLine("setActiveDevice",
                                      "BQLColloqVexil::setActiveDevice set active device with PID 0c3d returns 0")));
}

TEST_F(VexilDeviceLookup, SetActiveDeviceWithAnEmptyProductIdMakesTheFirstListedDeviceActive) {
    const std::string first = plug(0x1a2b, "A1", "Model 5", false);
    plug(0x0c3d, "B2", "Model 7", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    handler().setActiveDevice("0c3d");
    ASSERT_NE(runtimeActiveDevice(), first);

    handler().setActiveDevice("");
    EXPECT_EQ(runtimeActiveDevice(), first);
}

TEST_F(VexilDeviceLookup, SetActiveDeviceWithAnUnknownProductIdLogsNotFoundAndChangesNothing) {
    const std::string first = plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(connect());

    handler().setActiveDevice("ffff");
    EXPECT_EQ(runtimeActiveDevice(), first);
    EXPECT_THAT(
        log.entriesOf("setActiveDevice"),
        ElementsAre(debugLine("setActiveDevice",
                              "BQLColloqVexil::setActiveVexilDevice( ) the device with PID ffff was not found")));
}

TEST_F(VexilDeviceLookup, SetActiveDeviceRefusedByTheRuntimeLogsTheResultAndNotFound) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    ASSERT_EQ(vexilctl_inject_fault("ISessionManagerInt::setActiveDevice", -1, 1), VEXILCTL_OK);

    handler().setActiveDevice("1a2b");
    EXPECT_THAT(
        log.entriesOf("setActiveDevice"),
        ElementsAre(
            debugLine("setActiveDevice", "BQLColloqVexil::setActiveDevice set active device with PID 1a2b returns -1"),
            debugLine("setActiveDevice",
                      "BQLColloqVexil::setActiveVexilDevice( ) the device with PID 1a2b was not found")));
}

TEST_F(VexilDeviceLookup, SetActiveDeviceAsksTheRuntimeToRefreshFirst) {
    plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    int32_t before = 0;
    ASSERT_EQ(vexilctl_refresh_count(&before), VEXILCTL_OK);
    handler().setActiveDevice("1a2b");
    int32_t after = 0;
    ASSERT_EQ(vexilctl_refresh_count(&after), VEXILCTL_OK);
    EXPECT_EQ(after, before + 1);
}

TEST_F(VexilDeviceLookup, DeviceNameOfAnExactPathIsItsProductName) {
    plug(0x1a2b, "A1", "Model 5", false);
    const std::string path = plug(0x0c3d, "B2", "Model 5.1-X.2", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetDeviceNameFromVexilPath(path), "Model 5.1-X.2");
}

TEST_F(VexilDeviceLookup, DeviceNameOfAPathNoDeviceHasIsEmptyAndLogged) {
    const std::string path = plug(0x1a2b, "A1", "Model 5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    const std::string prefix = path.substr(0, path.size() - 1);  // equal paths only, not prefixes

    EXPECT_EQ(handler().GetDeviceNameFromVexilPath(prefix), "");
    EXPECT_THAT(log.entriesOf("GetDeviceNameFromVexilPath"),
                ElementsAre(debugLine("GetDeviceNameFromVexilPath",
                                      "BQLColloqVexil::GetDeviceNameFromVexilPath "
                                      "device with path " +
                                          prefix + " was not found")));
}

TEST_F(VexilDeviceLookup, ClientNameModelDot5MatchesAProductNamedModelUnderscore5) {
    const std::string path = plug(0x1a2b, "A1", "Model_5", false);
    ASSERT_NO_FATAL_FAILURE(connect());

    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model_5"), path);
    EXPECT_THAT(log.entriesOf("GetPathFromColloqId"),
                ElementsAre(debugLine("GetPathFromColloqId",
                                      "BQLColloqVexil::GetPidFromColloqPath found device 'Model.5' has path " + path)));
}

TEST_F(VexilDeviceLookup, ClientNameModelDot5MatchesAProductNamedModelHyphen5) {
    plug(0x1a2b, "A1", "Model 7", false);
    const std::string path = plug(0x0c3d, "B2", "Model-5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model_5"), path);
}

TEST_F(VexilDeviceLookup, ClientNameMustMatchTheWholeProductName) {
    plug(0x1a2b, "A1", "Model 55", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model_5"), "");
    EXPECT_THAT(log.entriesOf("GetPathFromColloqId"),
                ElementsAre(debugLine("GetPathFromColloqId",
                                      "BQLColloqVexil::GetPidFromColloqPath device with name Model.5 was not found")));
}

TEST_F(VexilDeviceLookup, ClientNameWithAPlusSignIsUsedAsAPattern) {
    plug(0x1a2b, "A1", "Pro+", false);
    const std::string repeated = plug(0x0c3d, "B2", "Proo", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    // "Pro+" as a pattern is "Pr" and one or more "o": it misses the product literally named so.
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Pro+"), repeated);
}

TEST_F(VexilDeviceLookup, ClientNameWithParenthesesIsUsedAsAPattern) {
    plug(0x1a2b, "A1", "Model (2)", false);
    const std::string grouped = plug(0x0c3d, "B2", "Model 2", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model (2)"), grouped);
}

TEST_F(VexilDeviceLookup, ClientNameThatIsNotAValidPatternThrowsRegexError) {
    plug(0x1a2b, "A1", "Model (5", false);
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_THROW(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model (5"), std::regex_error);
}

TEST_F(VexilDeviceLookup, LookupsWithoutDevicesFindNothing) {
    ASSERT_NO_FATAL_FAILURE(connect());
    EXPECT_EQ(handler().GetPathFromColloqId("AppleUSBAudioEngine:Brimquell:Model_5"), "");
    EXPECT_EQ(handler().GetDeviceNameFromVexilPath("hid/vid_2f0c&pid_1a2b/A1"), "");
}

}  // namespace
