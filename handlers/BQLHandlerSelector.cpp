#include "handlers/BQLHandlerSelector.h"

#include "handlers/BQLColloqVexil.h"
#include "hubproxy/BQLColloqVexilProxy.h"

namespace {

IBQLColloqHandler* proxySingleton() { return BQLColloqVexilProxy::getInstance(); }
IBQLColloqHandler* directSingleton() { return BQLColloqVexil::getInstance(); }

}  // namespace

BQLHandlerSelector::BQLHandlerSelector() : BQLHandlerSelector(proxySingleton, directSingleton) {}

BQLHandlerSelector::BQLHandlerSelector(HandlerSource proxy, HandlerSource direct)
    : proxySource(proxy), directSource(direct) {}

void BQLHandlerSelector::setHandler(IBQLColloqHandler* next) { handler.exchange(next); }

IBQLColloqHandler* BQLHandlerSelector::current() const { return handler.load(); }

int BQLHandlerSelector::getVexilActiveDevicePath(std::string* path) {
    return current()->getVexilActiveDevicePath(path);
}
bool BQLHandlerSelector::performIncomingCall(ICall* call, IContact* caller) {
    return current()->performIncomingCall(call, caller);
}
bool BQLHandlerSelector::performOutgoingCall(ICall* call, IContact* callee) {
    return current()->performOutgoingCall(call, callee);
}
bool BQLHandlerSelector::performTerminateCall(ICall* call) { return current()->performTerminateCall(call); }
bool BQLHandlerSelector::performAnsweredCall(ICall* call) { return current()->performAnsweredCall(call); }
bool BQLHandlerSelector::performHoldCall(ICall* call) { return current()->performHoldCall(call); }
bool BQLHandlerSelector::performResumeCall(ICall* call) { return current()->performResumeCall(call); }
bool BQLHandlerSelector::performMuteCall(bool mute) { return current()->performMuteCall(mute); }
bool BQLHandlerSelector::performInsertCall(ICall* call, IContact* contact) {
    return current()->performInsertCall(call, contact);
}
void BQLHandlerSelector::setActiveDevice(const char* deviceId) { current()->setActiveDevice(deviceId); }

void BQLHandlerSelector::ProcessVexilEvent(std::shared_ptr<BQLColloqEvent> event) {
    // The by-value parameter is the extra reference held for the call; it is released on
    // return, also when the handler throws.
    current()->ProcessVexilEvent(event);
}

int BQLHandlerSelector::connectToVexil(BQLEventQueue* queue) {
    if (current() == nullptr) {
        return 0;
    }
    proxySource()->connectToVexil(queue);
    directSource()->connectToVexil(queue);
    return 0;
}

int BQLHandlerSelector::disconnectFromVexil() {
    if (current() == nullptr) {
        return 0;
    }
    proxySource()->disconnectFromVexil();
    directSource()->disconnectFromVexil();
    return 0;
}
