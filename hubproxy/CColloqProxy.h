// The plug-in's endpoint of the hub pipe. It owns the pipe, turns send requests into hub records,
// checks every received block and hands each valid record to its observers' notifyPluginAboutEvent.
// A template over the observer so that it can be built and tested before the hub handler exists;
// the plug-in uses the default, CColloqProxy<> observed by BQLColloqVexilProxy.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>

#include "bqlcommon/Mutex.h"
#include "bqlutil/LogWriter.h"
#include "hubproxy/BQLColloqVexilProxyFwd.h"
#include "hubproxy/CClientPipe.h"
#include "hubproxy/ColloqCallArgs.h"
#include "hubproxy/ColloqRecords.h"
#include "hubproxy/ObservableBase.h"
#include "plugin/funclog.h"

template <class Observer = BQLColloqVexilProxy>
class CColloqProxy : public detail::ObservableBase<Observer, Observer*> {
public:
    // Builds the pipe and opens it: a constructed endpoint already listens.
    CColloqProxy();
    ~CColloqProxy();
    CColloqProxy(const CColloqProxy&) = delete;
    CColloqProxy& operator=(const CColloqProxy&) = delete;

    // Start and stop the pipe; each does nothing when the pipe is already in that state.
    void OpenPipe();
    void ClosePipe();

    // The pipe's receive callback: 1 for a block that is not a record, 0 for a delivered one.
    int DecodeAndFire(unsigned char* data, int length);
    // Wired as the pipe's connected callback, which the pipe never calls.
    void PipeConnected();

    ColloqCallArgs MakePipeArgs(MessageType type, ColloqCallState state, int callId, const wchar_t* contactName,
                                const wchar_t* phoneNumber, const char* extraText, const char* dtmfKeys);
    // Send and SendMute differ only in the name their trace carries.
    void Send(MessageType type, ColloqCallState state, int callId, const wchar_t* contactName,
              const wchar_t* phoneNumber, const char* extraText, const char* dtmfKeys);
    void SendMute(MessageType type, ColloqCallState state, int callId, const wchar_t* contactName,
                  const wchar_t* phoneNumber, const char* extraText, const char* dtmfKeys);
    void SendSetActiveDevice(uint32_t productId);
    void SendGetActiveDevice();

    // Callers ignore the registry's results.
    void registerCallback(Observer* observer) { this->subscribe(observer); }
    void unregisterCallback(Observer* observer) { this->cancel_subscription(observer); }

private:
    void Write(ColloqCallArgs record);

    const std::unique_ptr<CClientPipe> pipe;
    std::atomic<bool> opened{false};
    bql::Mutex pipeLock;
};

template <class Observer>
CColloqProxy<Observer>::CColloqProxy()
    : pipe(std::make_unique<CClientPipe>(
          L"\\\\.\\pipe\\bql_colloq_pipe",
          [this](unsigned char* data, int length) { return DecodeAndFire(data, length); },
          [this] { PipeConnected(); }, 5)) {
    OpenPipe();
}

template <class Observer>
CColloqProxy<Observer>::~CColloqProxy() {
    ClosePipe();
}

template <class Observer>
void CColloqProxy<Observer>::OpenPipe() {
    bql::MutexLock guard(pipeLock);
    if (opened) {
        return;
    }
    pipe->StartPipe();
    opened = true;
    LogWriter_debug("pipe started (Colloq side).", "void CColloqProxy::OpenPipe()", "<>");
}

template <class Observer>
void CColloqProxy<Observer>::ClosePipe() {
    bql::MutexLock guard(pipeLock);
    if (!opened) {
        return;
    }
    pipe->SetFlags(false, true);
    pipe->StopPipe();
    opened = false;
    LogWriter_debug("pipe stoped (Colloq side).", "void CColloqProxy::ClosePipe()", "<>");
}

template <class Observer>
int CColloqProxy<Observer>::DecodeAndFire(unsigned char* data, int length) {
    if (data == nullptr || length != static_cast<int>(sizeof(ColloqCallArgs))) {
        return 1;
    }
    // Copied out: a received block carries no alignment promise.
    ColloqCallArgs record;
    std::memcpy(&record, data, sizeof record);
    this->fire(&Observer::notifyPluginAboutEvent, record);
    return 0;
}

template <class Observer>
void CColloqProxy<Observer>::PipeConnected() {
    SendGetActiveDevice();
}

template <class Observer>
ColloqCallArgs CColloqProxy<Observer>::MakePipeArgs(MessageType type, ColloqCallState state, int callId,
                                                    const wchar_t* contactName, const wchar_t* phoneNumber,
                                                    const char* extraText, const char* dtmfKeys) {
    return BuildCallRecord(type, state, callId, contactName, phoneNumber, extraText, dtmfKeys);
}

// The trace names are spelled out rather than taken from the compiler, so that they read the same
// whatever the compiler and the observer type.
template <class Observer>
void CColloqProxy<Observer>::Send(MessageType type, ColloqCallState state, int callId, const wchar_t* contactName,
                                  const wchar_t* phoneNumber, const char* extraText, const char* dtmfKeys) {
    funclog trace(
        "void CColloqProxy::Send(MessageType, ColloqCallState, int, const wchar_t *, const wchar_t *, const char *, "
        "const char *)");
    Write(MakePipeArgs(type, state, callId, contactName, phoneNumber, extraText, dtmfKeys));
}

template <class Observer>
void CColloqProxy<Observer>::SendMute(MessageType type, ColloqCallState state, int callId, const wchar_t* contactName,
                                      const wchar_t* phoneNumber, const char* extraText, const char* dtmfKeys) {
    funclog trace(
        "void CColloqProxy::SendMute(MessageType, ColloqCallState, int, const wchar_t *, const wchar_t *, const char "
        "*, const char *)");
    Write(MakePipeArgs(type, state, callId, contactName, phoneNumber, extraText, dtmfKeys));
}

template <class Observer>
void CColloqProxy<Observer>::SendSetActiveDevice(uint32_t productId) {
    funclog trace("void CColloqProxy::SendSetActiveDevice(uint32_t)");
    Write(BuildSetActiveDeviceRequest(productId));
}

template <class Observer>
void CColloqProxy<Observer>::SendGetActiveDevice() {
    funclog trace("void CColloqProxy::SendGetActiveDevice()");
    Write(BuildGetActiveDeviceRequest());
}

template <class Observer>
void CColloqProxy<Observer>::Write(ColloqCallArgs record) {
    pipe->Send(reinterpret_cast<unsigned char*>(&record), static_cast<int>(sizeof record));
}
