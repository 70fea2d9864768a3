#include "RuntimeJournal.h"

#include <dlfcn.h>

#include <atomic>
#include <mutex>
#include <set>

#include "vexilrt/VexilRTSDKLite.h"

namespace runtimejournal {

namespace {

std::mutex journalMutex;
std::vector<std::string> journal;  // guarded by journalMutex

void record(std::string entry) {
    std::lock_guard<std::mutex> guard(journalMutex);
    journal.push_back(std::move(entry));
}

// Positions the handler never uses are forwarded too, so the wrappers stay faithful.
#define BQL_FORWARD_RESERVED(n) \
    int32_t reserved##n() override { return target()->reserved##n(); }

class RecordingSession final : public ISession {
public:
    explicit RecordingSession(ISession* real) : real_(real) {}

    ISession* target() const { return real_; }

    void Release() override;
    BQL_FORWARD_RESERVED(2)
    int32_t getPluginId(int32_t* pluginId) override { return real_->getPluginId(pluginId); }
    BQL_FORWARD_RESERVED(4)
    int32_t registerCallback(ICallEvents* events) override {
        record("ISession::registerCallback");
        return real_->registerCallback(events);
    }
    int32_t unregisterCallback(ICallEvents* events) override {
        record("ISession::unregisterCallback");
        return real_->unregisterCallback(events);
    }
    int32_t getCallCommand(ICallCommand** command) override { return real_->getCallCommand(command); }
    BQL_FORWARD_RESERVED(8)
    int32_t getActiveDevice(IDevice** device) override {
        record("ISession::getActiveDevice");
        return real_->getActiveDevice(device);
    }

private:
    ~RecordingSession() = default;

    ISession* real_;
};

// The wrappers handed out and not yet released.
std::mutex sessionsMutex;
std::set<ISession*> liveSessions;  // guarded by sessionsMutex

ISession* wrapSession(ISession* real) {
    if (real == nullptr) {
        return nullptr;
    }
    ISession* wrapper = new RecordingSession(real);
    std::lock_guard<std::mutex> guard(sessionsMutex);
    liveSessions.insert(wrapper);
    return wrapper;
}

// The runtime's own session behind a wrapper; anything else as it is.
ISession* unwrapSession(ISession* session) {
    std::lock_guard<std::mutex> guard(sessionsMutex);
    if (liveSessions.count(session) == 0) {
        return session;
    }
    return static_cast<RecordingSession*>(session)->target();
}

void RecordingSession::Release() {
    record("ISession::Release");
    {
        std::lock_guard<std::mutex> guard(sessionsMutex);
        liveSessions.erase(this);
    }
    real_->Release();
    delete this;
}

class RecordingSoftphoneDefaults final : public ISoftphoneDefaults {
public:
    void wrap(ISoftphoneDefaults* real) { real_.store(real); }
    ISoftphoneDefaults* target() const { return real_.load(); }

    BQL_FORWARD_RESERVED(1)
    BQL_FORWARD_RESERVED(2)
    BQL_FORWARD_RESERVED(3)
    BQL_FORWARD_RESERVED(4)
    BQL_FORWARD_RESERVED(5)
    BQL_FORWARD_RESERVED(6)
    BQL_FORWARD_RESERVED(7)
    BQL_FORWARD_RESERVED(8)
    BQL_FORWARD_RESERVED(9)
    BQL_FORWARD_RESERVED(10)
    BQL_FORWARD_RESERVED(11)
    BQL_FORWARD_RESERVED(12)
    BQL_FORWARD_RESERVED(13)
    int32_t setDefaultSoftphone(int32_t pluginId) override {
        record("setDefaultSoftphone " + std::to_string(pluginId));
        return target()->setDefaultSoftphone(pluginId);
    }

private:
    // The runtime's defaults are one object that is never released.
    std::atomic<ISoftphoneDefaults*> real_{nullptr};
};

class RecordingSessionManager final : public ISessionManager {
public:
    void wrap(ISessionManager* real) { real_.store(real); }
    ISessionManager* target() const { return real_.load(); }

    BQL_FORWARD_RESERVED(1)
    int32_t unregisterSession(ISession* session) override {
        record("unregisterSession");
        return target()->unregisterSession(unwrapSession(session));
    }
    int32_t setPluginStatus(int32_t pluginId, int32_t status) override {
        record("setPluginStatus " + std::to_string(pluginId) + " " + std::to_string(status));
        return target()->setPluginStatus(pluginId, status);
    }
    BQL_FORWARD_RESERVED(4)
    BQL_FORWARD_RESERVED(5)
    BQL_FORWARD_RESERVED(6)
    int32_t registerCallback(ISessionManagerEvents* events) override {
        record("registerCallback");
        return target()->registerCallback(events);
    }
    int32_t unregisterCallback(ISessionManagerEvents* events) override {
        record("unregisterCallback");
        return target()->unregisterCallback(events);
    }
    int32_t getSoftphoneDefaults(ISoftphoneDefaults** defaults) override {
        const int32_t status = target()->getSoftphoneDefaults(defaults);
        if (defaults != nullptr && *defaults != nullptr) {
            softphoneDefaults_.wrap(*defaults);
            *defaults = &softphoneDefaults_;
        }
        return status;
    }

private:
    std::atomic<ISessionManager*> real_{nullptr};
    RecordingSoftphoneDefaults softphoneDefaults_;
};

class RecordingSessionManagerInt final : public ISessionManagerInt {
public:
    void wrap(ISessionManagerInt* real) { real_.store(real); }
    ISessionManagerInt* target() const { return real_.load(); }

    int32_t registerSession(const wchar_t* name, int32_t kind, ISession** session) override {
        record("registerSession");
        const int32_t status = target()->registerSession(name, kind, session);
        if (session != nullptr) {
            *session = wrapSession(*session);
        }
        return status;
    }
    BQL_FORWARD_RESERVED(2)
    BQL_FORWARD_RESERVED(3)
    BQL_FORWARD_RESERVED(4)
    BQL_FORWARD_RESERVED(5)
    BQL_FORWARD_RESERVED(6)
    BQL_FORWARD_RESERVED(7)
    BQL_FORWARD_RESERVED(8)
    BQL_FORWARD_RESERVED(9)
    BQL_FORWARD_RESERVED(10)
    BQL_FORWARD_RESERVED(11)
    BQL_FORWARD_RESERVED(12)
    int32_t getDeviceEnumerator(IDeviceEnumerator** enumerator) override {
        return target()->getDeviceEnumerator(enumerator);
    }
    BQL_FORWARD_RESERVED(14)
    BQL_FORWARD_RESERVED(15)
    BQL_FORWARD_RESERVED(16)
    int32_t refreshDevices(int32_t mode) override { return target()->refreshDevices(mode); }
    BQL_FORWARD_RESERVED(18)
    int32_t setActiveDevice(const wchar_t* path) override { return target()->setActiveDevice(path); }

private:
    std::atomic<ISessionManagerInt*> real_{nullptr};
};

#undef BQL_FORWARD_RESERVED

// Process-lifetime, like the runtime's own managers.
RecordingSessionManager sessionManager;
RecordingSessionManagerInt sessionManagerInt;

// The runtime's own getter of this name, next after this program in the lookup order.
template <typename Getter>
Getter runtimeGetter(const char* name) {
    return reinterpret_cast<Getter>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

std::vector<std::string> entries() {
    std::lock_guard<std::mutex> guard(journalMutex);
    return journal;
}

void clear() {
    std::lock_guard<std::mutex> guard(journalMutex);
    journal.clear();
}

}  // namespace runtimejournal

extern "C" int32_t getSessionManager(ISessionManager** manager) {
    using Getter = int32_t (*)(ISessionManager**);
    static const Getter runtime = runtimejournal::runtimeGetter<Getter>("getSessionManager");
    const int32_t status = runtime(manager);
    if (manager != nullptr && *manager != nullptr) {
        runtimejournal::sessionManager.wrap(*manager);
        *manager = &runtimejournal::sessionManager;
    }
    return status;
}

extern "C" int32_t getSessionManagerInt(ISessionManagerInt** manager) {
    using Getter = int32_t (*)(ISessionManagerInt**);
    static const Getter runtime = runtimejournal::runtimeGetter<Getter>("getSessionManagerInt");
    const int32_t status = runtime(manager);
    if (manager != nullptr && *manager != nullptr) {
        runtimejournal::sessionManagerInt.wrap(*manager);
        *manager = &runtimejournal::sessionManagerInt;
    }
    return status;
}
