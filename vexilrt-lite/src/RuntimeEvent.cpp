#include "RuntimeEvent.h"

#include <cstring>

#include "WideText.h"

namespace vexil {

namespace {

template <std::size_t N>
void copyToCharArray(const std::string& text, char (&array)[N]) {
    text.copy(array, N - 1);
}

}  // namespace

DeviceStateEventArgs makeDeviceStateArgs(int32_t state, const std::wstring& path) {
    DeviceStateEventArgs args;
    std::memset(&args, 0, sizeof args);
    args.state = state;
    copyToWideArray(path, args.devicePath);
    return args;
}

CallStateEventArgs makeCallStateArgs(int32_t callId, int32_t code, const std::wstring& path,
                                     const std::string& keys, const std::string& keys2) {
    CallStateEventArgs args;
    std::memset(&args, 0, sizeof args);
    args.callId = callId;
    args.callState = code;
    copyToWideArray(path, args.devicePath);
    copyToCharArray(keys, args.dtmfKeys);
    copyToCharArray(keys2, args.dtmfKeys2);
    return args;
}

CallRequestEventArgs makeCallRequestArgs(const std::wstring& number, const std::wstring& alternate,
                                         const std::wstring& path) {
    CallRequestEventArgs args;
    std::memset(&args, 0, sizeof args);
    copyToWideArray(number, args.number);
    copyToWideArray(alternate, args.alternateNumber);
    copyToWideArray(path, args.devicePath);
    return args;
}

}  // namespace vexil
