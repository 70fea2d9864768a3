// The value objects of the CoreFoundation double: immutable strings and data.
#pragma once

#include <string>
#include <vector>

#include "Object.h"

namespace appledouble {

class String final : public Object {
public:
    explicit String(std::string characters) : text(std::move(characters)) {}
    const std::string text;
};

class Data final : public Object {
public:
    explicit Data(std::vector<unsigned char> contents) : bytes(std::move(contents)) {}
    const std::vector<unsigned char> bytes;
};

}  // namespace appledouble
