// The local log cannot be written (its folder is a file): the plug-in starts, binds, serves calls
// and stops as usual, and only the local log is missing.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#include "PluginEndToEnd.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;

struct BlockedLogFolder {
    const char* name;
    const char* fileInTheWay;  // below the test's folder: a plain file where a folder should be
};

std::ostream& operator<<(std::ostream& out, const BlockedLogFolder& blocked) { return out << blocked.name; }

const BlockedLogFolder kBlocked[] = {
    {"ApplicationDataFolderIsAFile", "/data"},
    {"LogFolderIsAFile", "/data/Brimquell/logs"},
};

class LogFolderFault : public PluginEndToEnd, public ::testing::WithParamInterface<BlockedLogFolder> {};

TEST_P(LogFolderFault, PluginStartsAndServesCallsWithoutItsLocalLog) {
    // An earlier start in this test's set-up may have made the folders already.
    const std::string blocker = folder + GetParam().fileInTheWay;
    fs::remove_all(blocker);
    fs::create_directories(fs::path(blocker).parent_path());
    std::ofstream(blocker) << "not a folder\n";
    ASSERT_TRUE(fs::is_regular_file(blocker));
    const Headset headset = plugHeadset(0x0a1b, "SN1", "Model 5.1");

    ASSERT_NO_FATAL_FAILURE(initializePlugin());
    expectPluginLine(ACCESSORY_LOG_MILESTONE, "Connected to Colloq successfully");
    chooseClientDevice(clientDeviceId(headset));
    connectIncomingCall(61, "5550161", "Hal");
    const uint64_t mark = clientMark();
    press(headset, CALL_STATE_TERMINATE_CALL, 61);
    expectClientCall(HostCall::EndCall, headset.path, mark);
    uninitializePlugin();

    EXPECT_EQ(runtimeCommandsOf(VEXILCTL_CMD_TERMINATE_CALL).size(), 1u);
    EXPECT_FALSE(runtimeRunning()) << "the runtime was not given back";
    EXPECT_TRUE(fs::is_regular_file(blocker)) << "the plug-in replaced the file in its way";
    EXPECT_TRUE(localLog().empty());
}

INSTANTIATE_TEST_SUITE_P(Folders, LogFolderFault, ::testing::ValuesIn(kBlocked),
                         [](const ::testing::TestParamInfo<BlockedLogFolder>& blocked) { return blocked.param.name; });

}  // namespace
}  // namespace e2e
