#include "SessionRegistry.h"

#include <utility>

namespace vexil {

std::optional<int32_t> SessionRegistry::add(std::wstring name, int32_t kind, const void* handle) {
    bql::MutexLock lock(mutex_);
    if (session_) {
        return std::nullopt;
    }
    SessionRecord record;
    record.pluginId = nextPluginId_++;
    record.name = std::move(name);
    record.kind = kind;
    record.handle = handle;
    session_ = std::move(record);
    return session_->pluginId;
}

std::optional<int32_t> SessionRegistry::removeByHandle(const void* handle) {
    bql::MutexLock lock(mutex_);
    if (!session_ || session_->handle != handle) {
        return std::nullopt;
    }
    const int32_t pluginId = session_->pluginId;
    session_.reset();
    return pluginId;
}

std::optional<int32_t> SessionRegistry::removeAny() {
    bql::MutexLock lock(mutex_);
    if (!session_) {
        return std::nullopt;
    }
    const int32_t pluginId = session_->pluginId;
    session_.reset();
    return pluginId;
}

std::optional<SessionRecord> SessionRegistry::current() const {
    bql::MutexLock lock(mutex_);
    return session_;
}

std::optional<int32_t> SessionRegistry::pluginIdOf(const void* handle) const {
    bql::MutexLock lock(mutex_);
    if (!session_ || session_->handle != handle) {
        return std::nullopt;
    }
    return session_->pluginId;
}

bool SessionRegistry::isRegistered(int32_t pluginId) const {
    bql::MutexLock lock(mutex_);
    return session_ && session_->pluginId == pluginId;
}

bool SessionRegistry::setStatus(int32_t pluginId, int32_t status) {
    bql::MutexLock lock(mutex_);
    if (!session_ || session_->pluginId != pluginId) {
        return false;
    }
    session_->status = status;
    return true;
}

void SessionRegistry::reset() {
    bql::MutexLock lock(mutex_);
    session_.reset();
    nextPluginId_ = kFirstPluginId;
}

}  // namespace vexil
