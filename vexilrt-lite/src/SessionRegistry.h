// The one softphone session the runtime may hold, and the plug-in ids it hands out.
// A session is known by the address of the ISession handle given to its softphone; the
// address is only compared, never followed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bqlcommon/Mutex.h"

namespace vexil {

struct SessionRecord {
    int32_t pluginId = 0;
    std::wstring name;
    int32_t kind = 0;
    int32_t status = 0;  // 0 unset, 2 active, 5 inactive
    const void* handle = nullptr;
};

class SessionRegistry {
public:
    static constexpr int32_t kFirstPluginId = 1001;

    // The new plug-in id, or nothing while a session is registered.
    std::optional<int32_t> add(std::wstring name, int32_t kind, const void* handle) BQL_EXCLUDES(mutex_);

    // The plug-in id of the session dropped, or nothing when `handle` is not the session's.
    std::optional<int32_t> removeByHandle(const void* handle) BQL_EXCLUDES(mutex_);
    // The plug-in id of the session dropped, if there was one.
    std::optional<int32_t> removeAny() BQL_EXCLUDES(mutex_);

    std::optional<SessionRecord> current() const BQL_EXCLUDES(mutex_);
    std::optional<int32_t> pluginIdOf(const void* handle) const BQL_EXCLUDES(mutex_);
    bool isRegistered(int32_t pluginId) const BQL_EXCLUDES(mutex_);

    // False for an id that is not the registered session's.
    bool setStatus(int32_t pluginId, int32_t status) BQL_EXCLUDES(mutex_);

    // No session, and plug-in ids start over.
    void reset() BQL_EXCLUDES(mutex_);

private:
    mutable bql::Mutex mutex_;
    std::optional<SessionRecord> session_ BQL_GUARDED_BY(mutex_);
    int32_t nextPluginId_ BQL_GUARDED_BY(mutex_) = kFirstPluginId;
};

}  // namespace vexil
