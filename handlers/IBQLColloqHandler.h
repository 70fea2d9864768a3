// What the worker drives the headset through: the direct runtime handler or the hub proxy.
#pragma once

#include <memory>
#include <string>

#include "calls/BQLColloqEvent.h"
#include "calls/safeQueue.h"
#include "vexilrt/CallInterfaces.h"

using BQLEventQueue = safeQueue<std::shared_ptr<BQLColloqEvent>>;

// Slot order is fixed; the handlers are process-wide singletons, never deleted through this
// interface.
class IBQLColloqHandler {
public:
    // 0 with the active device's path, -1 when there is no session or no active device.
    virtual int getVexilActiveDevicePath(std::string* path) = 0;
    virtual bool performIncomingCall(ICall* call, IContact* caller) = 0;
    virtual bool performOutgoingCall(ICall* call, IContact* callee) = 0;
    virtual bool performTerminateCall(ICall* call) = 0;
    virtual bool performAnsweredCall(ICall* call) = 0;
    virtual bool performHoldCall(ICall* call) = 0;
    virtual bool performResumeCall(ICall* call) = 0;
    virtual bool performMuteCall(bool mute) = 0;
    virtual bool performInsertCall(ICall* call, IContact* contact) = 0;
    // deviceId carries the product id of the device the client selected.
    virtual void setActiveDevice(const char* deviceId) = 0;
    // 0 connected, -1 failed.
    virtual int connectToVexil(BQLEventQueue* queue) = 0;
    virtual int disconnectFromVexil() = 0;
    virtual void ProcessVexilEvent(std::shared_ptr<BQLColloqEvent> event) = 0;

protected:
    ~IBQLColloqHandler() = default;
};
