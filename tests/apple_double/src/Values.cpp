// CFRetain, CFRelease, CFString and CFData.
#include <CoreFoundation/CoreFoundation.h>

#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "Misuse.h"
#include "Values.h"

using appledouble::Data;
using appledouble::String;
using appledouble::reportMisuse;

extern "C" {

// A synonym for NULL, as on Apple systems.
const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef cf) {
    if (cf == nullptr) {
        reportMisuse(__func__, "null object");
    } else if (!appledouble::retain(cf)) {
        reportMisuse(__func__, "no live object");
    }
    return cf;
}

void CFRelease(CFTypeRef cf) {
    if (cf == nullptr) {
        reportMisuse(__func__, "null object");
    } else if (!appledouble::release(cf)) {
        reportMisuse(__func__, "no live object (released once too often?)");
    }
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* cStr, CFStringEncoding encoding) {
    if (cStr == nullptr) {
        reportMisuse(__func__, "null C string");
        return nullptr;
    }
    if (encoding != kCFStringEncodingASCII) {
        reportMisuse(__func__, "only the ASCII encoding is served here");
        return nullptr;
    }
    const std::size_t length = std::strlen(cStr);
    for (std::size_t at = 0; at < length; ++at) {
        if (static_cast<unsigned char>(cStr[at]) > 0x7F) {
            return nullptr;  // not ASCII: CoreFoundation refuses it as well
        }
    }
    try {
        return static_cast<CFStringRef>(appledouble::adopt(std::make_unique<String>(std::string(cStr, length))));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
    if (length < 0 || (bytes == nullptr && length > 0)) {
        reportMisuse(__func__, "negative length or null bytes");
        return nullptr;
    }
    try {
        std::vector<unsigned char> copy;
        if (length > 0) {
            copy.assign(bytes, bytes + length);
        }
        return static_cast<CFDataRef>(appledouble::adopt(std::make_unique<Data>(std::move(copy))));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

const UInt8* CFDataGetBytePtr(CFDataRef theData) {
    const Data* data = appledouble::lookUp<Data>(theData);
    if (data == nullptr) {
        reportMisuse(__func__, "no live data object");
        return nullptr;
    }
    return data->bytes.data();
}

CFIndex CFDataGetLength(CFDataRef theData) {
    const Data* data = appledouble::lookUp<Data>(theData);
    if (data == nullptr) {
        reportMisuse(__func__, "no live data object");
        return 0;
    }
    return static_cast<CFIndex>(data->bytes.size());
}

}  // extern "C"
