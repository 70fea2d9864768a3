#include "hubproxy/CClientPipe.h"

#include "hubproxy/PipeNames.h"

CClientPipe::CClientPipe(std::wstring name, std::function<int(unsigned char*, int)> received,
                         std::function<void()> connected, int seconds)
    : PlatformPipe(MAC_PIPE_COLLOQ_SIDE_, MAC_PIPE_HUB_SIDE_, std::move(connected), std::move(received), seconds),
      pipeName(std::move(name)) {}
