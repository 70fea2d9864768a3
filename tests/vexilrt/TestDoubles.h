// Stand-ins for the softphone side: a call and a contact the runtime reads through their
// interfaces, and subscribers that record what reaches them and on which thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "bqltest/Inbox.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace vexiltest {

// How long a test waits for something that should happen at once.
constexpr std::chrono::milliseconds kPatience{5000};

// A one-way flag another thread waits for.
class Signal {
public:
    void raise();
    bool isRaised() const;
    // True once raised; false when `timeout` ran out first.
    bool waitFor(std::chrono::milliseconds timeout = kPatience) const;

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable raised_;
    bool isRaised_ = false;
};

class FakeCall final : public ICall {
public:
    explicit FakeCall(int id) : id_(id) {}
    int getID() override { return id_; }
    void setID(int id) override { id_ = id; }
    int getConferenceID() override { return 0; }
    void setConferenceID(int) override {}
    bool getInConference() override { return false; }
    void setInConference(bool) override {}

private:
    int id_;
};

class FakeContact final : public IContact {
public:
    FakeContact(std::wstring name, std::wstring phone) : name_(std::move(name)), phone_(std::move(phone)) {}
    const wchar_t* getName() const override { return name_.c_str(); }
    void setName(const wchar_t* name) override { name_ = name; }
    const wchar_t* getFriendlyName() const override { return L"friendly"; }
    void setFriendlyName(const wchar_t*) override {}
    int getID() const override { return 77; }
    void setID(int) override {}
    const wchar_t* getSipUri() const override { return L"sip:someone@example.org"; }
    void setSipUri(const wchar_t*) override {}
    const wchar_t* getPhone() const override { return phone_.c_str(); }
    void setPhone(const wchar_t* phone) override { phone_ = phone; }
    const wchar_t* getEmail() const override { return L"someone@example.org"; }
    void setEmail(const wchar_t*) override {}
    const wchar_t* getWorkPhone() const override { return L"work"; }
    void setWorkPhone(const wchar_t*) override {}
    const wchar_t* getMobilePhone() const override { return L"mobile"; }
    void setMobilePhone(const wchar_t*) override {}
    const wchar_t* getHomePhone() const override { return L"home"; }
    void setHomePhone(const wchar_t*) override {}
    void Release() override {}

private:
    std::wstring name_;
    std::wstring phone_;
};

struct ReceivedEvent {
    enum class Kind { CallState, CallRequest, DeviceState, ManagerCallState };
    Kind kind = Kind::CallState;
    std::thread::id thread;
    std::string threadName;
    CallStateEventArgs callState{};
    CallRequestEventArgs callRequest{};
    DeviceStateEventArgs deviceState{};
};

// What subscribers received, in order; shared by subscribers when a test compares them.
using EventLog = bqltest::Inbox<ReceivedEvent>;

// Runs inside a delivery, on the runtime's thread, after the event is logged.
using DeliveryHook = std::function<void(const ReceivedEvent&)>;

class RecordingCallEvents final : public ICallEvents {
public:
    explicit RecordingCallEvents(EventLog& log, DeliveryHook hook = {}) : log_(log), hook_(std::move(hook)) {}
    bool OnCallStateChanged(const CallStateEventArgs& args) override;
    bool OnCallRequest(const CallRequestEventArgs& args) override;

private:
    void received(ReceivedEvent event);
    EventLog& log_;
    DeliveryHook hook_;
};

class RecordingManagerEvents final : public ISessionManagerEvents {
public:
    explicit RecordingManagerEvents(EventLog& log, DeliveryHook hook = {}) : log_(log), hook_(std::move(hook)) {}
    bool OnCallStateChanged(const CallStateEventArgs& args) override;
    bool OnDeviceStateChanged(const DeviceStateEventArgs& args) override;

private:
    void received(ReceivedEvent event);
    EventLog& log_;
    DeliveryHook hook_;
};

}  // namespace vexiltest
