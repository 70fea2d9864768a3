// The loggers the simulated client hands out through getLogger. The client's logger record is
// opaque to a plug-in; the harness writes a tag and an index into it, so that log() can tell
// which logger a line was written to. Thread-safe.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "colloq/AccessoryAPI.h"
#include "hostharness/ThreadAnnotations.h"

namespace hostharness {

class LoggerRegistry {
public:
    // Fills *record so that it names this logger; does nothing for a null record.
    void issue(const std::string& name, ACCLogger_t* record) HH_EXCLUDES(mutex_);
    // The name a record was issued under; nothing for a record this registry did not fill.
    std::optional<std::string> nameOf(const ACCLogger_t* record) const HH_EXCLUDES(mutex_);
    // Forgets every issued logger; records filled before no longer name one.
    void clear() HH_EXCLUDES(mutex_);

private:
    mutable Mutex mutex_;
    std::vector<std::string> names_ HH_GUARDED_BY(mutex_);
    uint32_t generation_ HH_GUARDED_BY(mutex_) = 1;
};

}  // namespace hostharness
