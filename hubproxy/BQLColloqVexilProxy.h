// The hub handler, used while the maker's hub application runs: call commands become records
// to the hub, and the hub's records become events on the plug-in's queue.
#pragma once

#include <memory>
#include <string>

#include <boost/thread/mutex.hpp>

#include "colloq/AccessoryAPI.h"
#include "handlers/IBQLColloqHandler.h"
#include "hubproxy/CColloqProxy.h"

class BQLColloqPlugin;

class BQLColloqVexilProxy : public IBQLColloqHandler {
public:
    // The process-wide instance, created (and its pipe started) on first use; never destroyed.
    static BQLColloqVexilProxy* getInstance();

    int getVexilActiveDevicePath(std::string* path) override;
    bool performIncomingCall(ICall* pCall, IContact* pContact) override;
    bool performOutgoingCall(ICall* pCall, IContact* pContact) override;
    bool performTerminateCall(ICall* pCall) override;
    bool performAnsweredCall(ICall* pCall) override;
    bool performHoldCall(ICall* pCall) override;
    bool performResumeCall(ICall* pCall) override;
    bool performMuteCall(bool mute) override;
    bool performInsertCall(ICall* pCall, IContact* pContact) override;
    void setActiveDevice(const char* deviceId) override;
    int connectToVexil(BQLEventQueue* queue) override;
    int disconnectFromVexil() override;
    void ProcessVexilEvent(std::shared_ptr<BQLColloqEvent> event) override;
    virtual ~BQLColloqVexilProxy();

    // Listens again after a disconnect; the hub check calls it whenever it picks this handler.
    void OpenPipe();
    // The endpoint's observer method, on the pipe's receiving thread.
    void notifyPluginAboutEvent(const ColloqCallArgs& record);

private:
    BQLColloqVexilProxy();
    BQLColloqVexilProxy(const BQLColloqVexilProxy&) = delete;
    BQLColloqVexilProxy& operator=(const BQLColloqVexilProxy&) = delete;

    // Sends one call message; false without a call.
    bool sendCall(ColloqCallState state, ICall* call, const wchar_t* name, const wchar_t* phone,
                  const char* logText, const char* location);
    void changeDeviceFromHub(BQLColloqPlugin& plugin, const BQLColloqEvent& event);
    void pushEvent(const std::shared_ptr<BQLColloqEvent>& event);

    std::unique_ptr<CColloqProxy<>> endpoint;
    boost::mutex proxyLock;
    std::string activeDevicePath;        // guarded by proxyLock
    BQLEventQueue* eventQueue = nullptr;  // guarded by proxyLock
};
