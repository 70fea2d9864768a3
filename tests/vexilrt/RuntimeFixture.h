// A pristine runtime for every test, and the steps most tests start with.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "TestDoubles.h"
#include "bqlcommon/ReleasingPtr.h"
#include "vexilctl/VexilControl.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace vexiltest {

std::wstring wide(const std::string& text);
std::string narrow(const std::wstring& text);

// The standard path of a test headset with this serial.
std::string headsetPath(uint16_t productId, const std::string& serial);

class RuntimeTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Initialises the runtime and fetches its three managers.
    void start();
    // start(), then registers "Veltra Colloq" as a softphone session.
    void startWithSession();

    // Plugs in a headset and returns its path.
    std::string plug(uint16_t productId, const std::string& serial, const std::string& name = "Model 5.1-X.2",
                     bool hasDisplay = true);

    // Waits until the event thread has delivered everything raised so far.
    void settle();

    ICallCommand* callCommand();

    ISessionManager* manager_ = nullptr;
    ISessionManagerInt* managerInt_ = nullptr;
    IDeviceManager* deviceManager_ = nullptr;
    bql::ReleasingPtr<ISession> session_;
    int32_t pluginId_ = 0;

    // Subscribers outlive every delivery: the runtime is shut down before they go.
    EventLog log_;
    RecordingCallEvents callEvents_{log_};
    RecordingManagerEvents managerEvents_{log_};

private:
    bql::ReleasingPtr<ICallCommand> command_;
};

}  // namespace vexiltest
