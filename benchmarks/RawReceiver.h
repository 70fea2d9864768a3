// The receiving side of the "raw datagram plus one handoff" bound: a thread that takes each
// record-sized datagram off the raw socket and hands the sender's stamp to a handoff chain, as
// the plug-in's pipe thread hands a hub record to its worker.
#pragma once

#include <thread>

#include "HandoffChain.h"

namespace bench {

class RawReceiver {
public:
    RawReceiver(int socket, HandoffChain& chain);
    ~RawReceiver();
    RawReceiver(const RawReceiver&) = delete;
    RawReceiver& operator=(const RawReceiver&) = delete;

    // False when the thread or its wake-up pipe could not be made.
    bool start();
    // Wakes the thread through its pipe and joins it.
    void stop();

private:
    void run();

    const int socket_;
    HandoffChain& chain_;
    int wake_[2] = {-1, -1};
    std::thread thread_;
};

}  // namespace bench
