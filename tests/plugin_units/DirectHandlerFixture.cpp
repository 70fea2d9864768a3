#include "DirectHandlerFixture.h"

#include <algorithm>
#include <iterator>

#include "RuntimeJournal.h"
#include "vexilctl/VexilControl.h"

namespace {

constexpr int32_t kSettleTimeoutMs = 10000;

}  // namespace

void DirectHandlerTest::SetUp() {
    // The runtime is per process; a test run earlier in this process may have left it running.
    ShutDownVexilRuntime();
    ASSERT_EQ(vexilctl_reset(), VEXILCTL_OK);
    runtimejournal::clear();
    ASSERT_TRUE(log.ready());
}

void DirectHandlerTest::TearDown() {
    handler().disconnectFromVexil();
    ShutDownVexilRuntime();
    EXPECT_EQ(vexilctl_reset(), VEXILCTL_OK);
}

std::string DirectHandlerTest::plug(uint16_t productId, const std::string& serial, const std::string& productName,
                                    bool hasDisplay) {
    char path[VEXILCTL_PATH_BYTES] = {};
    EXPECT_EQ(vexilctl_make_headset_path(productId, serial.c_str(), path, sizeof path), VEXILCTL_OK);
    EXPECT_EQ(vexilctl_add_headset(path, productName.c_str(), productId, hasDisplay ? 1 : 0), VEXILCTL_OK);
    return path;
}

void DirectHandlerTest::settle() { ASSERT_EQ(vexilctl_wait_idle(kSettleTimeoutMs), VEXILCTL_OK); }

bool DirectHandlerTest::runtimeRunning() {
    int32_t running = 0;
    EXPECT_EQ(vexilctl_is_running(&running), VEXILCTL_OK);
    return running != 0;
}

std::vector<bqltest::LocalLogEntry> DirectHandlerTest::errors() const {
    std::vector<bqltest::LocalLogEntry> chosen;
    const std::vector<bqltest::LocalLogEntry> all = log.entries();
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                 [](const bqltest::LocalLogEntry& entry) { return entry.level == "ERROR"; });
    return chosen;
}

std::vector<std::string> DirectHandlerTest::journalEntriesStartingWith(const std::string& prefix) {
    std::vector<std::string> chosen;
    const std::vector<std::string> all = runtimejournal::entries();
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                 [&prefix](const std::string& entry) { return entry.rfind(prefix, 0) == 0; });
    return chosen;
}
