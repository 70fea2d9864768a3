// Lets reconnect work scheduled on the main queue run only while the start that scheduled it is
// still in force. The main queue is the system's, so such work may run after the instance has
// stopped or been released; it must then do nothing. Starts are told apart by a generation
// number, not by address, since a new instance may reuse a released one's memory.
#pragma once

#include <cstdint>
#include <mutex>

class ReconnectGate {
public:
    using Generation = std::uint64_t;

    // Opens the gate for a new start and returns its generation.
    static Generation open();
    // Closes the gate if generation is the open one; waits for a reconnect in progress.
    static void close(Generation generation);

    // Held while one reconnect runs; false unless generation is the open one.
    class Pass {
    public:
        explicit Pass(Generation generation);
        explicit operator bool() const { return allowed; }

    private:
        std::unique_lock<std::mutex> hold;
        bool allowed;
    };
};
