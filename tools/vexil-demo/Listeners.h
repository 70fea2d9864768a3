// The demo softphone's two subscribers: each prints what it hears, on the thread it hears it
// on, and files it in the inbox.
#pragma once

#include "Inbox.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace demo {

class CallListener final : public ICallEvents {
public:
    explicit CallListener(Inbox& inbox) : inbox_(inbox) {}
    bool OnCallStateChanged(const CallStateEventArgs& args) override;
    bool OnCallRequest(const CallRequestEventArgs& args) override;

private:
    Inbox& inbox_;
};

class DeviceListener final : public ISessionManagerEvents {
public:
    explicit DeviceListener(Inbox& inbox) : inbox_(inbox) {}
    bool OnCallStateChanged(const CallStateEventArgs& args) override;
    bool OnDeviceStateChanged(const DeviceStateEventArgs& args) override;

private:
    Inbox& inbox_;
};

// The runtime's name of a call-state code, or "code N".
std::string callStateName(int32_t code);

}  // namespace demo
