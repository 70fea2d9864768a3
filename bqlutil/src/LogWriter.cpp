#include "bqlutil/LogWriter.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <type_traits>

#include <log4cxx/level.h>
#include <log4cxx/logger.h>
#include <log4cxx/mdc.h>

#include "Export.h"
#include "LogConfiguration.h"
#include "bqlcommon/SharedMutex.h"

namespace {

static_assert(std::is_same_v<log4cxx::LogString, std::string>,
              "callers' UTF-8 texts are handed to log4cxx unchanged");

constexpr int kSuccess = 0;
constexpr int kFailure = -1;

// The logger used when the caller gives no name.
constexpr const char kDefaultLoggerName[] = "bqlutil";

std::string textOrEmpty(const char* text) {
  return text != nullptr ? std::string(text) : std::string();
}

// Holds one entry of log4cxx's per-thread mapped diagnostic context while in scope. Texts are
// handed over as log4cxx's own UTF-8 strings: its std::string overloads would re-encode them
// through the process locale.
class ScopedContextEntry {
 public:
  ScopedContextEntry(const char* key, const char* value) : key_(key) {
    log4cxx::MDC::putLS(key_, textOrEmpty(value));
  }
  ~ScopedContextEntry() {
    try {
      log4cxx::LogString previous;
      log4cxx::MDC::remove(key_, previous);
    } catch (...) {
      // Only allocation can fail here, and a destructor must not throw.
    }
  }
  ScopedContextEntry(const ScopedContextEntry&) = delete;
  ScopedContextEntry& operator=(const ScopedContextEntry&) = delete;

 private:
  log4cxx::LogString key_;
};

bool isExistingFile(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::is_regular_file(path, error);
}

// The logger in use. Lines are written under the shared lock and a new set-up is put in place
// under the exclusive one, so no line is ever half-way between an old route and a new one.
class LogWriterState {
 public:
  int init(const std::string& configFile, const std::string& logDir, const std::string& name)
      BQL_EXCLUDES(mutex_) {
    const log4cxx::LoggerPtr logger = log4cxx::Logger::getLoggerLS(name);
    if (isExistingFile(configFile)) {
      const auto properties = bqlutil::readConfigurationFile(configFile);
      if (!properties) {
        return kFailure;
      }
      bql::ExclusiveLock lock(mutex_);
      if (!bqlutil::routeByConfiguration(*properties, logger)) {
        return kFailure;
      }
      logger_ = logger;
      return kSuccess;
    }
    if (logDir.empty()) {
      return kFailure;
    }
    const log4cxx::AppenderPtr appender = bqlutil::openLogFile(logDir, name);
    if (!appender) {
      return kFailure;
    }
    bql::ExclusiveLock lock(mutex_);
    bqlutil::routeToAppender(logger, appender);
    logger_ = logger;
    return kSuccess;
  }

  int write(const log4cxx::LevelPtr& level, const char* message, const char* function,
            const char* location) BQL_EXCLUDES(mutex_) {
    bql::SharedLock lock(mutex_);
    if (!logger_) {
      return kFailure;
    }
    if (logger_->isEnabledFor(level)) {
      const ScopedContextEntry functionEntry(bqlutil::kFunctionContextKey, function);
      const ScopedContextEntry locationEntry(bqlutil::kLocationContextKey, location);
      logger_->forcedLogLS(level, textOrEmpty(message),
                           log4cxx::spi::LocationInfo::getLocationUnavailable());
    }
    return kSuccess;
  }

 private:
  bql::SharedMutex mutex_;
  log4cxx::LoggerPtr logger_ BQL_GUARDED_BY(mutex_);
};

// Never destroyed: callers may still log from their own static destructors.
LogWriterState& state() {
  static auto* const instance = new LogWriterState();
  return *instance;
}

using LevelOf = log4cxx::LevelPtr (*)();

// log4cxx reports some failures by throwing; none of that may cross the C interface.
int writeLine(LevelOf levelOf, const char* message, const char* function, const char* location) {
  try {
    return state().write(levelOf(), message, function, location);
  } catch (...) {
    return kFailure;
  }
}

}  // namespace

extern "C" {

BQLUTIL_EXPORT int LogWriter_init(const char* configFile, const char* logDir,
                                  const char* loggerName) {
  try {
    std::string name = textOrEmpty(loggerName);
    if (name.empty()) {
      name = kDefaultLoggerName;
    }
    return state().init(textOrEmpty(configFile), textOrEmpty(logDir), name);
  } catch (...) {
    return kFailure;
  }
}

BQLUTIL_EXPORT int LogWriter_info(const char* message, const char* function,
                                  const char* location) {
  return writeLine(&log4cxx::Level::getInfo, message, function, location);
}

BQLUTIL_EXPORT int LogWriter_debug(const char* message, const char* function,
                                   const char* location) {
  return writeLine(&log4cxx::Level::getDebug, message, function, location);
}

BQLUTIL_EXPORT int LogWriter_error(const char* message, const char* function,
                                   const char* location) {
  return writeLine(&log4cxx::Level::getError, message, function, location);
}

}  // extern "C"
