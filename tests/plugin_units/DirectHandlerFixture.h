// The direct handler against the substitute runtime: a pristine runtime, an empty journal and
// a local log of its own for every test; the handler singleton is disconnected and the
// runtime shut down and reset afterwards.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "bqltest/LocalLog.h"
#include "handlers/BQLColloqVexil.h"

class DirectHandlerTest : public ::testing::Test {
protected:
    // The plug-in id the runtime gives the first session after a reset.
    static constexpr int32_t kFirstPluginId = 1001;

    void SetUp() override;
    void TearDown() override;

    static BQLColloqVexil& handler() { return *BQLColloqVexil::getInstance(); }

    // Plugs a headset in and returns its path.
    static std::string plug(uint16_t productId, const std::string& serial, const std::string& productName,
                            bool hasDisplay);
    // Waits until the runtime has delivered every event raised so far.
    static void settle();
    static bool runtimeRunning();

    // Local-log entries at error level.
    std::vector<bqltest::LocalLogEntry> errors() const;
    // Journal entries that start with prefix.
    static std::vector<std::string> journalEntriesStartingWith(const std::string& prefix);

    bqltest::LocalLogCapture log;
    BQLEventQueue queue;
};
