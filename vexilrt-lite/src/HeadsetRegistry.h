// The headsets plugged in, in the order they came, and which one is the active device.
// Headsets are physical: the registry lives as long as the process, across runtime restarts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bqlcommon/Mutex.h"

#include "Headset.h"

namespace vexil {

class HeadsetRegistry {
public:
    // False when a headset with that path is plugged in already. The first headset to come
    // while none is active becomes the active device.
    bool add(Headset headset) BQL_EXCLUDES(mutex_);

    // False when no headset has that path. Unplugging the active headset makes the one added
    // after it active, else the first remaining one.
    bool remove(const std::wstring& path) BQL_EXCLUDES(mutex_);

    std::vector<Headset> all() const BQL_EXCLUDES(mutex_);
    std::size_t count() const BQL_EXCLUDES(mutex_);
    bool contains(const std::wstring& path) const BQL_EXCLUDES(mutex_);

    std::optional<Headset> active() const BQL_EXCLUDES(mutex_);
    // False when no headset has that path; the active device is then unchanged.
    bool setActive(const std::wstring& path) BQL_EXCLUDES(mutex_);

    void countRefresh() BQL_EXCLUDES(mutex_);
    int32_t refreshCount() const BQL_EXCLUDES(mutex_);

    void clear() BQL_EXCLUDES(mutex_);

private:
    std::vector<Headset>::const_iterator find(const std::wstring& path) const BQL_REQUIRES(mutex_);

    mutable bql::Mutex mutex_;
    std::vector<Headset> headsets_ BQL_GUARDED_BY(mutex_);
    std::optional<std::wstring> activePath_ BQL_GUARDED_BY(mutex_);
    int32_t refreshCount_ BQL_GUARDED_BY(mutex_) = 0;
};

}  // namespace vexil
