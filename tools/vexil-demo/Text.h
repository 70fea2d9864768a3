// The runtime speaks UTF-32 wide strings; the terminal speaks UTF-8.
#pragma once

#include <boost/locale/encoding_utf.hpp>

#include <string>

namespace demo {

inline std::string narrow(const std::wstring& text) {
    return boost::locale::conv::utf_to_utf<char>(text);
}

inline std::wstring wide(const std::string& text) {
    return boost::locale::conv::utf_to_utf<wchar_t>(text);
}

}  // namespace demo
