// Device names a client could hand the plug-in that a careless matcher chokes on, each delivered
// through onActiveDeviceChanged on a thread with the stack of a client's secondary thread on
// macOS: the callback returns 0, the process lives, and the next valid name still selects a
// headset.
#include <functional>
#include <regex>
#include <string>

#include "PluginEndToEnd.h"
#include "hostharness/HostileDeviceNames.h"
#include "hostharness/SmallStackThread.h"

namespace e2e {
namespace {

using hostharness::HarnessStatus;

class HostileDeviceName : public WithTwoHeadsets {
protected:
    // Runs `work` on one small-stack thread, as a client's secondary thread calls in.
    static void onSmallStack(const std::function<void()>& work) {
        ASSERT_EQ(hostharness::runOnThreadWithStack(hostharness::kSecondaryThreadStack, work), HarnessStatus::Ok);
    }

    // Fires onActiveDeviceChanged from this thread; returns what the plug-in returned.
    int choose(const std::string& clientId) {
        hostharness::CallbackArgs args;
        args.device = clientId;
        int result = -1;
        EXPECT_EQ(client().callbacks().fire(CallbackSlot::OnActiveDeviceChanged, args, &result), HarnessStatus::Ok);
        return result;
    }

    int chooseOnSmallStack(const std::string& clientId) {
        int result = -1;
        onSmallStack([&] { result = choose(clientId); });
        return result;
    }
};

TEST_F(HostileDeviceName, EachReturnsOnASmallStackAndTheNextValidNameSelectsTheHeadset) {
    allowErrors();  // names that are no valid pattern are logged as errors
    startWithHeadset(first);
    onSmallStack([&] {
        const Headset* next = &second;
        for (const hostharness::HostileDeviceName& hostile : hostharness::hostileDeviceNames()) {
            SCOPED_TRACE(hostile.label);
            EXPECT_EQ(choose(hostile.identifier), 0);
            EXPECT_EQ(choose(clientDeviceId(*next)), 0);
            ASSERT_EQ(runtimeActiveDevice(), next->path);
            next = next == &second ? &first : &second;
        }
    });
}

TEST_F(HostileDeviceName, NameTooLongToBeADevicesIsLoggedAsAnInvalidPatternAndChangesNothing) {
    allowErrors();
    startWithHeadset(first);
    const std::string tooLong(64 * 1024, 'A');
    EXPECT_EQ(chooseOnSmallStack(hostharness::clientDeviceIdentifier(tooLong)), 0);
    EXPECT_EQ(runtimeActiveDevice(), first.path);
    expectLocalLog("ERROR", "onActiveDeviceChanged", std::regex_error(std::regex_constants::error_space).what());
}

TEST_F(HostileDeviceName, NameThatIsNoValidPatternLogsTheStandardLibrarysLineAndChangesNothing) {
    allowErrors();
    startWithHeadset(first);
    EXPECT_EQ(chooseOnSmallStack("AppleUSBAudioEngine:Brimquell:Model (7"), 0);
    EXPECT_EQ(runtimeActiveDevice(), first.path);
    expectLocalLog("ERROR", "onActiveDeviceChanged", std::regex_error(std::regex_constants::error_paren).what());
}

}  // namespace
}  // namespace e2e
