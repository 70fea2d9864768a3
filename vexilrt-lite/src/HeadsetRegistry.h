// The headsets plugged in, in the order they came, and which one is the active device.
// Headsets are physical: the registry lives as long as the process, across runtime restarts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Headset.h"
#include "Mutex.h"

namespace vexil {

class HeadsetRegistry {
public:
    // False when a headset with that path is plugged in already. The first headset to come
    // while none is active becomes the active device.
    bool add(Headset headset) EXCLUDES(mutex_);

    // False when no headset has that path. Unplugging the active headset makes the one added
    // after it active, else the first remaining one.
    bool remove(const std::wstring& path) EXCLUDES(mutex_);

    std::vector<Headset> all() const EXCLUDES(mutex_);
    std::size_t count() const EXCLUDES(mutex_);
    bool contains(const std::wstring& path) const EXCLUDES(mutex_);

    std::optional<Headset> active() const EXCLUDES(mutex_);
    // False when no headset has that path; the active device is then unchanged.
    bool setActive(const std::wstring& path) EXCLUDES(mutex_);

    void countRefresh() EXCLUDES(mutex_);
    int32_t refreshCount() const EXCLUDES(mutex_);

    void clear() EXCLUDES(mutex_);

private:
    std::vector<Headset>::const_iterator find(const std::wstring& path) const REQUIRES(mutex_);

    mutable Mutex mutex_;
    std::vector<Headset> headsets_ GUARDED_BY(mutex_);
    std::optional<std::wstring> activePath_ GUARDED_BY(mutex_);
    int32_t refreshCount_ GUARDED_BY(mutex_) = 0;
};

}  // namespace vexil
