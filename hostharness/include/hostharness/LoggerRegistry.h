// The loggers the simulated client hands out through getLogger. The client's logger record is
// opaque to a plug-in; the harness writes a tag and an index into it, so that log() can tell
// which logger a line was written to. Thread-safe.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bqlcommon/Mutex.h"
#include "colloq/AccessoryAPI.h"

namespace hostharness {

class LoggerRegistry {
public:
    // Fills *record so that it names this logger; does nothing for a null record.
    void issue(const std::string& name, ACCLogger_t* record) BQL_EXCLUDES(mutex_);
    // The name a record was issued under; nothing for a record this registry did not fill.
    std::optional<std::string> nameOf(const ACCLogger_t* record) const BQL_EXCLUDES(mutex_);
    // Forgets every issued logger; records filled before no longer name one.
    void clear() BQL_EXCLUDES(mutex_);

private:
    mutable bql::Mutex mutex_;
    std::vector<std::string> names_ BQL_GUARDED_BY(mutex_);
    uint32_t generation_ BQL_GUARDED_BY(mutex_) = 1;
};

}  // namespace hostharness
