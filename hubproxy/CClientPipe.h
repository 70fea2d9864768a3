// The plug-in's side of the hub pipe: listens on MAC_PIPE_COLLOQ_SIDE_, sends to MAC_PIPE_HUB_SIDE_.
#pragma once

#include <functional>
#include <string>

#include "hubproxy/PlatformPipe.h"

class CClientPipe final : public PlatformPipe {
public:
    // Note the order of the callables, the reverse of the base's. `pipeName` is only kept: no
    // transport here opens anything by it.
    CClientPipe(std::wstring pipeName, std::function<int(unsigned char*, int)> onReceive,
                std::function<void()> onConnected, int timeout);
    ~CClientPipe() = default;

private:
    const std::wstring pipeName;
};
