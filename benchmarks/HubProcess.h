// The benchmark's side of bql-bench-hub: starts it as a second process with two datagram socket
// pairs (control and raw), talks to it, and stops it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

#include "HubProtocol.h"

namespace bench {

class HubProcess {
public:
    HubProcess() = default;
    ~HubProcess();
    HubProcess(const HubProcess&) = delete;
    HubProcess& operator=(const HubProcess&) = delete;

    // Starts the hub and waits until it owns the hub's port; false, with error() set, otherwise.
    bool start(const std::string& executable, const std::string& devicePath);
    // Asks it to quit, then waits for it (killing it after a few seconds).
    void stop();

    pid_t pid() const { return pid_; }
    const std::string& error() const { return error_; }

    bool send(const HubMessage& message);
    bool sendRecordSized(const HubMessage& message);
    // The next message of this kind (and call id and state, when given); other messages are
    // skipped. Nothing when the time ran out or the hub is gone.
    std::optional<HubMessage> expect(HubMessageKind kind, std::chrono::milliseconds timeout,
                                     std::optional<int32_t> callId = std::nullopt,
                                     std::optional<int32_t> callState = std::nullopt);
    // The bench's end of the raw socket, for a receiving thread.
    int rawSocket() const { return raw_; }

private:
    pid_t pid_ = -1;
    int control_ = -1;
    int raw_ = -1;
    std::string error_;
};

}  // namespace bench
