// Arbitrary client device identifiers: each input is the identifier, up to its first zero byte,
// and the callback's second text after it. It goes through the client's onActiveDeviceChanged
// (the name in the identifier becomes a pattern matched against the runtime's product names,
// which may select a device) and through the device-identity helpers on their own, on a thread
// with the 512 KiB stack of a client's secondary thread on macOS, where a matcher that recurses
// on its input would overflow.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "PluginUnderFuzz.h"
#include "handlers/BQLColloqVexil.h"
#include "handlers/DeviceIdentity.h"
#include "hostharness/SmallStackThread.h"

namespace {

fuzzsupport::PluginUnderFuzz* pluginUnderFuzz = nullptr;

void check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "device identity: %s\n", what);
        std::abort();
    }
}

void handToPlugin(const uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::string::size_type end = input.find('\0');
    const std::string identifier = input.substr(0, end);
    const std::string second = end == std::string::npos ? std::string() : input.substr(end + 1);

    const std::string name = GetNameFromColloqPath(identifier.c_str());
    check(name.find(':') == std::string::npos, "a name carries a field separator");
    check(name.size() <= identifier.size(), "a name is longer than its identifier");
    check(name.find('_') == std::string::npos || name.find('.') != std::string::npos,
          "a name kept its first underscore");
    (void)isBrimquell(identifier);
    (void)BQLColloqVexil::getInstance()->GetDeviceNameFromVexilPath(identifier);

    const int32_t kind = data != nullptr && size > 0 ? data[0] : 0;
    check(pluginUnderFuzz->callbacks().onActiveDeviceChanged(kind, identifier.c_str(), second.c_str()) == 0,
          "onActiveDeviceChanged did not return 0");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    pluginUnderFuzz = &fuzzsupport::PluginUnderFuzz::start(fuzzsupport::HeadsetSide::Direct);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    check(hostharness::runOnThreadWithStack(hostharness::kSecondaryThreadStack, [&] { handToPlugin(data, size); }) ==
              hostharness::HarnessStatus::Ok,
          "no thread with a small stack");
    return 0;
}
