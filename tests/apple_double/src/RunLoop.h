// A run loop of the double: one Asio io_context per thread. Message ports scheduled on it wait for
// their messages there, so their callouts run on the thread that runs the loop.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>

#include "Object.h"
#include "platform/AsioLocalSockets.h"

namespace appledouble {

class RunLoop final : public Object {
public:
    RunLoop();
    ~RunLoop() override;

    // Scheduled ports hold the context weakly: it ends with the loop, and with it their waits.
    std::shared_ptr<boost::asio::io_context> context() const { return loop; }
    // Returns once stopped, or at once when nothing is scheduled. A stop that came while no run
    // was under way is forgotten, as on Apple systems.
    void run();
    void stop();

private:
    const std::shared_ptr<boost::asio::io_context> loop;
};

// The source of one local message port; it keeps the port alive.
class RunLoopSource final : public Object {
public:
    explicit RunLoopSource(CFMessagePortRef port);
    ~RunLoopSource() override;

    const CFMessagePortRef port;
};

}  // namespace appledouble
