// CFRunLoop and the run-loop sources of message ports.
#include "RunLoop.h"

#include <exception>
#include <memory>
#include <new>

#include "MessagePort.h"
#include "Misuse.h"
#include "Values.h"

namespace appledouble {
namespace {

// The run loop of the calling thread; the thread's reference is dropped when the thread ends.
class CurrentRunLoop {
public:
    ~CurrentRunLoop() {
        if (handle != nullptr) {
            release(handle);
        }
    }

    CFRunLoopRef get() {
        if (handle == nullptr) {
            handle = static_cast<CFRunLoopRef>(adopt(std::make_unique<RunLoop>()));
        }
        return handle;
    }

private:
    CFRunLoopRef handle = nullptr;
};

thread_local CurrentRunLoop currentRunLoop;

String& commonModes() {
    static String* const modes = [] {
        auto* constant = new String("kCFRunLoopCommonModes");
        adoptConstant(*constant);
        return constant;
    }();
    return *modes;
}

}  // namespace

RunLoop::RunLoop() : loop(std::make_shared<boost::asio::io_context>(1)) {}

// Destroying the context drops the waits of the ports scheduled here.
RunLoop::~RunLoop() = default;

void RunLoop::run() {
    // A stop ends the run under way; one that came while none was under way ends nothing.
    loop->restart();
    try {
        loop->run();
    } catch (const std::exception& failure) {
        reportMisuse("CFRunLoopRun", failure.what());
    }
}

void RunLoop::stop() { loop->stop(); }

RunLoopSource::RunLoopSource(CFMessagePortRef local) : port(local) { retain(port); }

RunLoopSource::~RunLoopSource() { release(port); }

}  // namespace appledouble

using appledouble::MessagePort;
using appledouble::RunLoop;
using appledouble::RunLoopSource;
using appledouble::reportMisuse;

extern "C" {

const CFRunLoopMode kCFRunLoopCommonModes = static_cast<CFRunLoopMode>(static_cast<const void*>(&appledouble::commonModes()));

CFRunLoopRef CFRunLoopGetCurrent(void) {
    try {
        return appledouble::currentRunLoop.get();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void CFRunLoopRun(void) {
    CFRunLoopRef current = CFRunLoopGetCurrent();
    RunLoop* loop = appledouble::lookUp<RunLoop>(current);
    if (loop != nullptr) {
        loop->run();
    }
}

void CFRunLoopStop(CFRunLoopRef rl) {
    RunLoop* loop = appledouble::lookUp<RunLoop>(rl);
    if (loop == nullptr) {
        reportMisuse(__func__, "no live run loop");
        return;
    }
    loop->stop();
}

void CFRunLoopAddSource(CFRunLoopRef rl, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    RunLoop* loop = appledouble::lookUp<RunLoop>(rl);
    RunLoopSource* added = appledouble::lookUp<RunLoopSource>(source);
    if (loop == nullptr || added == nullptr || appledouble::lookUp<appledouble::String>(mode) == nullptr) {
        reportMisuse(__func__, "no live run loop, source or mode");
        return;
    }
    if (mode != kCFRunLoopCommonModes) {
        reportMisuse(__func__, "only kCFRunLoopCommonModes is run here");
        return;
    }
    MessagePort* port = appledouble::lookUp<MessagePort>(added->port);
    if (port != nullptr) {
        port->schedule(*loop, added->port);
    }
}

CFRunLoopSourceRef CFMessagePortCreateRunLoopSource(CFAllocatorRef, CFMessagePortRef local, CFIndex) {
    MessagePort* port = appledouble::lookUp<MessagePort>(local);
    if (port == nullptr) {
        reportMisuse(__func__, "no live message port");
        return nullptr;
    }
    if (!port->isLocal() || !port->isValid()) {
        return nullptr;
    }
    try {
        return static_cast<CFRunLoopSourceRef>(appledouble::adopt(std::make_unique<RunLoopSource>(local)));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // extern "C"
