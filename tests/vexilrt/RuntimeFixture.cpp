#include "RuntimeFixture.h"

#include <boost/locale/encoding_utf.hpp>


namespace vexiltest {

std::wstring wide(const std::string& text) {
    return boost::locale::conv::utf_to_utf<wchar_t>(text);
}

std::string narrow(const std::wstring& text) {
    return boost::locale::conv::utf_to_utf<char>(text);
}

std::string headsetPath(uint16_t productId, const std::string& serial) {
    char path[VEXILCTL_PATH_BYTES];
    EXPECT_EQ(VEXILCTL_OK, vexilctl_make_headset_path(productId, serial.c_str(), path, sizeof path));
    return path;
}

void RuntimeTest::SetUp() {
    ShutDownVexilRuntime();
    ASSERT_EQ(VEXILCTL_OK, vexilctl_reset());
}

void RuntimeTest::TearDown() {
    ShutDownVexilRuntime();
    command_.reset();
    session_.reset();
    EXPECT_EQ(VEXILCTL_OK, vexilctl_reset());
}

void RuntimeTest::start() {
    ASSERT_EQ(VEXIL_OK, InitVexilRuntime());
    ASSERT_EQ(VEXIL_OK, getSessionManager(&manager_));
    ASSERT_EQ(VEXIL_OK, getSessionManagerInt(&managerInt_));
    ASSERT_EQ(VEXIL_OK, getDeviceManager(&deviceManager_));
}

void RuntimeTest::startWithSession() {
    ASSERT_NO_FATAL_FAILURE(start());
    ISession* session = nullptr;
    ASSERT_EQ(VEXIL_OK, managerInt_->registerSession(VEXIL_SOFTPHONE_COLLOQ, VEXIL_SESSION_KIND_SOFTPHONE, &session));
    ASSERT_NE(nullptr, session);
    session_.reset(session);
    ASSERT_EQ(VEXIL_OK, session_->getPluginId(&pluginId_));
}

std::string RuntimeTest::plug(uint16_t productId, const std::string& serial, const std::string& name,
                              bool hasDisplay) {
    const std::string path = headsetPath(productId, serial);
    EXPECT_EQ(VEXILCTL_OK, vexilctl_add_headset(path.c_str(), name.c_str(), productId, hasDisplay ? 1 : 0));
    return path;
}

void RuntimeTest::settle() {
    ASSERT_EQ(VEXILCTL_OK, vexilctl_wait_idle(static_cast<int32_t>(kPatience.count())));
}

ICallCommand* RuntimeTest::callCommand() {
    if (!command_) {
        ICallCommand* command = nullptr;
        EXPECT_EQ(VEXIL_OK, session_->getCallCommand(&command));
        command_.reset(command);
    }
    return command_.get();
}

}  // namespace vexiltest
