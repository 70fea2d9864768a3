// A pipe with freely chosen port names, to play the hub (or a second plug-in) inside a test.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "hubproxy/PlatformPipe.h"

class NamedPipe final : public PlatformPipe {
public:
    NamedPipe(std::string local, std::string remote, std::function<int(unsigned char*, int)> received, int seconds = 5)
        : PlatformPipe(std::move(local), std::move(remote), nullptr, std::move(received), seconds) {}
    ~NamedPipe() = default;
};
