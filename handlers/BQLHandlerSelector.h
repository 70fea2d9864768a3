// Holds the handler currently serving the headset and forwards every operation to it. Both
// handlers are connected and disconnected together; the current one only decides who serves
// the call commands, device selection and headset events.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "handlers/IBQLColloqHandler.h"

class BQLHandlerSelector {
public:
    using HandlerSource = IBQLColloqHandler* (*)();

    // Connects and disconnects the two handler singletons (proxy, then direct).
    BQLHandlerSelector();
    // The same with other handlers in their places.
    BQLHandlerSelector(HandlerSource proxySource, HandlerSource directSource);
    BQLHandlerSelector(const BQLHandlerSelector&) = delete;
    BQLHandlerSelector& operator=(const BQLHandlerSelector&) = delete;
    virtual ~BQLHandlerSelector() = default;

    void setHandler(IBQLColloqHandler* handler);

    // Forwarders: the current handler must be set.
    int getVexilActiveDevicePath(std::string* path);
    bool performIncomingCall(ICall* call, IContact* caller);
    bool performOutgoingCall(ICall* call, IContact* callee);
    bool performTerminateCall(ICall* call);
    bool performAnsweredCall(ICall* call);
    bool performHoldCall(ICall* call);
    bool performResumeCall(ICall* call);
    bool performMuteCall(bool mute);
    bool performInsertCall(ICall* call, IContact* contact);
    void setActiveDevice(const char* deviceId);
    void ProcessVexilEvent(std::shared_ptr<BQLColloqEvent> event);

    // 0 at once with no handler set; otherwise connects the proxy then the direct handler,
    // ignoring their results (each logs its own failure), and returns 0.
    int connectToVexil(BQLEventQueue* queue);
    // Disconnects the proxy then the direct handler; always 0.
    int disconnectFromVexil();

private:
    IBQLColloqHandler* current() const;

    std::atomic<IBQLColloqHandler*> handler{nullptr};
    HandlerSource proxySource;
    HandlerSource directSource;
};
