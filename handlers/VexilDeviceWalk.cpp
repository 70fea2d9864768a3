#include "handlers/VexilDeviceWalk.h"

#include <vector>

#include "bqlutil/Converter.h"

namespace vexilwalk {

namespace {

constexpr int32_t kPathChars = 260;
constexpr int32_t kProductNameChars = 200;

}  // namespace

std::wstring readWide(IDevice& device, DeviceText which) {
    const int32_t capacity = which == DeviceText::Path ? kPathChars : kProductNameChars;
    std::vector<wchar_t> buffer(static_cast<std::size_t>(capacity), L'\0');
    if (which == DeviceText::Path) {
        device.getDevicePath(buffer.data(), capacity);
    } else {
        device.getProductName(buffer.data(), capacity);
    }
    buffer.back() = L'\0';
    return std::wstring(buffer.data());
}

std::string readNarrow(IDevice& device, DeviceText which) {
    return Converter::ConvertToString(readWide(device, which));
}

}  // namespace vexilwalk
