// Shared set-up of the harness tests: a fresh client before and after each test, the paths of
// the fixture plug-ins, and the time-outs used while waiting.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "hostharness/HostHarness.h"
#include "hostharness/PluginLibrary.h"

namespace harnesstest {

using namespace std::chrono_literals;

// Long enough never to expire on a loaded machine when the awaited call does come.
constexpr std::chrono::milliseconds kArrives = 10s;
// How long a test waits for a call that must not come.
constexpr std::chrono::milliseconds kStaysAway = 100ms;

inline const std::string kFixturePlugin = FIXTURE_PLUGIN_PATH;
inline const std::string kPluginWithoutInitialize = NO_INITIALIZE_PLUGIN_PATH;

class HarnessTest : public ::testing::Test {
protected:
    void SetUp() override { host.reset(); }
    void TearDown() override {
        plugin.unload();
        host.reset();
    }

    // Loads and initializes the fixture plug-in; fails the test if that does not work.
    void startFixture() {
        ASSERT_EQ(plugin.load(kFixturePlugin), hostharness::HarnessStatus::Ok) << plugin.lastError();
        int result = -1;
        ASSERT_EQ(plugin.initialize(host.entryPoint(), &result), hostharness::HarnessStatus::Ok);
        ASSERT_EQ(result, 0);
    }

    hostharness::HarnessStatus waitFor(hostharness::HostCall call, const std::string& device,
                                       std::chrono::milliseconds timeout = kArrives,
                                       hostharness::RecordedCall* matched = nullptr) {
        hostharness::CallExpectation expected;
        expected.call = call;
        expected.device = device;
        return host.journal().waitFor(expected, timeout, matched);
    }

    hostharness::HarnessStatus waitForLog(const std::string& text, std::chrono::milliseconds timeout = kArrives,
                                          hostharness::RecordedCall* matched = nullptr) {
        hostharness::LogExpectation expected;
        expected.text = text;
        return host.journal().waitForLog(expected, timeout, matched);
    }

    hostharness::HostHarness& host = hostharness::HostHarness::instance();
    hostharness::PluginLibrary plugin;
};

}  // namespace harnesstest
