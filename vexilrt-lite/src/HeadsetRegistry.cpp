#include "HeadsetRegistry.h"

#include <algorithm>
#include <utility>

namespace vexil {

std::vector<Headset>::const_iterator HeadsetRegistry::find(const std::wstring& path) const {
    return std::find_if(headsets_.begin(), headsets_.end(),
                        [&path](const Headset& headset) { return headset.path == path; });
}

bool HeadsetRegistry::add(Headset headset) {
    bql::MutexLock lock(mutex_);
    if (find(headset.path) != headsets_.end()) {
        return false;
    }
    if (!activePath_) {
        activePath_ = headset.path;
    }
    headsets_.push_back(std::move(headset));
    return true;
}

bool HeadsetRegistry::remove(const std::wstring& path) {
    bql::MutexLock lock(mutex_);
    const auto found = find(path);
    if (found == headsets_.end()) {
        return false;
    }
    const auto next = headsets_.erase(found);
    if (activePath_ == path) {
        if (next != headsets_.end()) {
            activePath_ = next->path;
        } else if (!headsets_.empty()) {
            activePath_ = headsets_.front().path;
        } else {
            activePath_.reset();
        }
    }
    return true;
}

std::vector<Headset> HeadsetRegistry::all() const {
    bql::MutexLock lock(mutex_);
    return headsets_;
}

std::size_t HeadsetRegistry::count() const {
    bql::MutexLock lock(mutex_);
    return headsets_.size();
}

bool HeadsetRegistry::contains(const std::wstring& path) const {
    bql::MutexLock lock(mutex_);
    return find(path) != headsets_.end();
}

std::optional<Headset> HeadsetRegistry::active() const {
    bql::MutexLock lock(mutex_);
    if (!activePath_) {
        return std::nullopt;
    }
    const auto found = find(*activePath_);
    return found == headsets_.end() ? std::nullopt : std::optional<Headset>(*found);
}

bool HeadsetRegistry::setActive(const std::wstring& path) {
    bql::MutexLock lock(mutex_);
    if (find(path) == headsets_.end()) {
        return false;
    }
    activePath_ = path;
    return true;
}

void HeadsetRegistry::countRefresh() {
    bql::MutexLock lock(mutex_);
    ++refreshCount_;
}

int32_t HeadsetRegistry::refreshCount() const {
    bql::MutexLock lock(mutex_);
    return refreshCount_;
}

void HeadsetRegistry::clear() {
    bql::MutexLock lock(mutex_);
    headsets_.clear();
    activePath_.reset();
    refreshCount_ = 0;
}

}  // namespace vexil
