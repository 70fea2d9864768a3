#include "ControlSupport.h"

#include <optional>

#include "Runtime.h"
#include "WideText.h"

namespace vexil {

int32_t readText(const char* text, std::size_t maxChars, std::wstring& out) {
    if (text == nullptr) {
        return VEXILCTL_E_INVALID_ARG;
    }
    std::optional<std::wstring> wide = fromUtf8(text);
    if (!wide) {
        return VEXILCTL_E_INVALID_ARG;
    }
    if (wide->size() > maxChars) {
        return VEXILCTL_E_TOO_LONG;
    }
    out = std::move(*wide);
    return VEXILCTL_OK;
}

int32_t readEventDevicePath(const char* path, std::wstring& out) {
    const int32_t status = readText(path, VEXILCTL_PATH_CHARS - 1, out);
    if (status != VEXILCTL_OK) {
        return status;
    }
    if (!out.empty() && !Runtime::instance().headsets().contains(out)) {
        return VEXILCTL_E_NOT_FOUND;
    }
    return VEXILCTL_OK;
}

int32_t writeText(const std::string& text, char* buffer, int32_t capacity) {
    if (buffer == nullptr || capacity <= 0) {
        return VEXILCTL_E_INVALID_ARG;
    }
    if (text.size() >= static_cast<std::size_t>(capacity)) {
        buffer[0] = '\0';
        return VEXILCTL_E_BUFFER_TOO_SMALL;
    }
    text.copy(buffer, text.size());
    buffer[text.size()] = '\0';
    return VEXILCTL_OK;
}

}  // namespace vexil
