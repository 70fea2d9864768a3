#include "LogConfiguration.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include <log4cxx/helpers/bytearrayinputstream.h>
#include <log4cxx/helpers/charsetencoder.h>
#include <log4cxx/helpers/outputstreamwriter.h>
#include <log4cxx/helpers/pool.h>
#include <log4cxx/level.h>
#include <log4cxx/patternlayout.h>
#include <log4cxx/propertyconfigurator.h>
#include <log4cxx/writerappender.h>

#include "AppendingFileStream.h"

namespace bqlutil {
namespace {

// Time, level, thread, the caller's function and location, then the message.
constexpr const char kLinePattern[] =
    "%d{yyyy-MM-dd HH:mm:ss,SSS} %-5p [%t] %X{function} %X{location} %m%n";

}  // namespace

std::unique_ptr<log4cxx::helpers::Properties> readConfigurationFile(const std::string& file) {
  // Read here rather than by log4cxx, which would pass the path through the process locale.
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    return nullptr;
  }
  log4cxx::helpers::ByteList bytes{std::istreambuf_iterator<char>(in),
                                   std::istreambuf_iterator<char>()};
  if (in.bad()) {
    return nullptr;
  }
  auto properties = std::make_unique<log4cxx::helpers::Properties>();
  properties->load(std::make_shared<log4cxx::helpers::ByteArrayInputStream>(bytes));
  return properties;
}

log4cxx::AppenderPtr openLogFile(const std::string& logDir, const std::string& fileStem) {
  std::error_code error;
  std::filesystem::create_directories(logDir, error);
  if (error) {
    return nullptr;
  }
  const std::string file = (std::filesystem::path(logDir) / (fileStem + ".log")).string();
  log4cxx::helpers::OutputStreamPtr stream = AppendingFileStream::open(file);
  if (!stream) {
    return nullptr;
  }
  log4cxx::helpers::CharsetEncoderPtr utf8 = log4cxx::helpers::CharsetEncoder::getUTF8Encoder();
  auto appender = std::make_shared<log4cxx::WriterAppender>();
  appender->setName(LOG4CXX_STR("bqlutil-file"));
  appender->setLayout(std::make_shared<log4cxx::PatternLayout>(LOG4CXX_STR(kLinePattern)));
  appender->setWriter(std::make_shared<log4cxx::helpers::OutputStreamWriter>(stream, utf8));
  log4cxx::helpers::Pool pool;
  appender->activateOptions(pool);
  return appender;
}

bool routeByConfiguration(log4cxx::helpers::Properties& properties,
                          const log4cxx::LoggerPtr& logger) {
  logger->removeAllAppenders();
  logger->setAdditivity(true);
  logger->setLevel(nullptr);
  return log4cxx::PropertyConfigurator::configure(properties) ==
         log4cxx::spi::ConfigurationStatus::Configured;
}

void routeToAppender(const log4cxx::LoggerPtr& logger, const log4cxx::AppenderPtr& appender) {
  logger->removeAllAppenders();
  logger->setAdditivity(false);
  logger->setLevel(log4cxx::Level::getDebug());
  logger->addAppender(appender);
}

}  // namespace bqlutil
