// The hub's side of the pipe: listens on MAC_PIPE_HUB_SIDE_, sends to MAC_PIPE_COLLOQ_SIDE_.
#pragma once

#include <functional>
#include <utility>

#include "hubproxy/PipeNames.h"
#include "hubproxy/PlatformPipe.h"

class HubPipe final : public PlatformPipe {
public:
    HubPipe(std::function<int(unsigned char*, int)> received, int seconds)
        : PlatformPipe(MAC_PIPE_HUB_SIDE_, MAC_PIPE_COLLOQ_SIDE_, nullptr, std::move(received), seconds) {}
    ~HubPipe() = default;
};
