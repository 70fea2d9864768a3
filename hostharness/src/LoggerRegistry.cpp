#include "hostharness/LoggerRegistry.h"

#include <cstdint>
#include <cstring>

namespace hostharness {

namespace {

// What the harness writes into the first bytes of a logger record it fills. The generation
// changes on clear, so a record kept from before a reset names no logger.
struct LoggerTag {
    char magic[8];
    uint32_t generation;
    uint32_t index;
};
static_assert(sizeof(LoggerTag) <= sizeof(ACCLogger_t), "the tag fits the client's logger record");

constexpr char kMagic[8] = {'h', 'h', 'l', 'o', 'g', 'g', 'e', 'r'};

}  // namespace

void LoggerRegistry::issue(const std::string& name, ACCLogger_t* record) {
    if (record == nullptr) {
        return;
    }
    LoggerTag tag{};
    std::memcpy(tag.magic, kMagic, sizeof(kMagic));
    {
        bql::MutexLock lock(mutex_);
        tag.generation = generation_;
        tag.index = static_cast<uint32_t>(names_.size());
        names_.push_back(name);
    }
    ACCLogger_t filled{};
    std::memcpy(filled.opaque, &tag, sizeof(tag));
    *record = filled;
}

std::optional<std::string> LoggerRegistry::nameOf(const ACCLogger_t* record) const {
    if (record == nullptr) {
        return std::nullopt;
    }
    LoggerTag tag{};
    std::memcpy(&tag, record->opaque, sizeof(tag));
    if (std::memcmp(tag.magic, kMagic, sizeof(kMagic)) != 0) {
        return std::nullopt;
    }
    bql::MutexLock lock(mutex_);
    if (tag.generation != generation_ || tag.index >= names_.size()) {
        return std::nullopt;
    }
    return names_[tag.index];
}

void LoggerRegistry::clear() {
    bql::MutexLock lock(mutex_);
    names_.clear();
    ++generation_;
}

}  // namespace hostharness
