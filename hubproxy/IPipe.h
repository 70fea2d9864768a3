// The transport between the plug-in and the hub: moves opaque byte blocks, one-way, between two
// named ports. It knows nothing of the record layout.
#pragma once

class IPipe {
public:
    // (Re)starts the receiving side; a running receiver is torn down first.
    virtual void StartPipe() = 0;
    // Stops the receiving side; does nothing when it is not running.
    virtual void StopPipe() = 0;
    // Sends one block to the remote port and returns; a block nobody can take is dropped.
    virtual void Send(unsigned char* data, int length) = 0;
    // Reception is driven by the receiving thread, so there is nothing to poll.
    virtual void Receive() = 0;

protected:
    // Owners hold and destroy the concrete pipe, never an IPipe.
    IPipe() = default;
    ~IPipe() = default;
    IPipe(const IPipe&) = delete;
    IPipe& operator=(const IPipe&) = delete;
};
