// Text at the runtime's edges: UTF-32 wide strings towards the softphone, UTF-8 towards the
// control interface, and the bounded, always-terminated copies into caller buffers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace vexil {

// Invalid code points are dropped: a caller's bad text never stops a command.
std::string toUtf8(const std::wstring& text);
std::string toUtf8(const wchar_t* text);

// Empty when the text is not valid UTF-8, so that the control interface can refuse it.
std::optional<std::wstring> fromUtf8(const char* text);

// Copies into a caller's wide buffer with truncation and always a terminator.
// VEXIL_E_INVALID_ARG for a null buffer or capacity <= 0, VEXIL_E_BUFFER_TOO_SMALL when cut.
int32_t copyToWideBuffer(const std::wstring& text, wchar_t* buffer, int32_t capacity);

// Copies into a fixed wide array; the text has been checked to fit.
template <std::size_t N>
void copyToWideArray(const std::wstring& text, wchar_t (&array)[N]) {
    text.copy(array, N - 1);
}

// Copies into a byte buffer, cut at a character boundary when it does not fit, terminated.
// Returns false when the text was cut.
bool copyUtf8Truncated(const std::string& text, char* buffer, std::size_t capacity);

}  // namespace vexil
