// Setting up log4cxx for the local log. Each route is prepared in full before it replaces the
// current one, so a set-up that fails half-way leaves the previous log working.
#pragma once

#include <memory>
#include <string>

#include <log4cxx/appender.h>
#include <log4cxx/helpers/properties.h>
#include <log4cxx/logger.h>

namespace bqlutil {

// Each line carries the caller's function name and location text in log4cxx's mapped diagnostic
// context under these keys, so a configuration file can place them with %X{function} and
// %X{location}.
inline constexpr const char kFunctionContextKey[] = "function";
inline constexpr const char kLocationContextKey[] = "location";

// The properties of a log4cxx configuration file; null when the file cannot be read.
std::unique_ptr<log4cxx::helpers::Properties> readConfigurationFile(const std::string& file);

// An appender writing UTF-8 lines to <logDir>/<fileStem>.log, the folder created with any
// missing parents; null when the folder or the file cannot be made.
log4cxx::AppenderPtr openLogFile(const std::string& logDir, const std::string& fileStem);

// Lets the properties decide where the logger's lines go: whatever an earlier openLogFile route
// put on the logger is removed first. False when log4cxx rejects the properties.
bool routeByConfiguration(log4cxx::helpers::Properties& properties,
                          const log4cxx::LoggerPtr& logger);

// Sends the logger's lines, debug level and up, to the appender alone.
void routeToAppender(const log4cxx::LoggerPtr& logger, const log4cxx::AppenderPtr& appender);

}  // namespace bqlutil
