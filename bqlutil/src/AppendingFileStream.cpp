#include "AppendingFileStream.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include <log4cxx/helpers/bytebuffer.h>
#include <log4cxx/helpers/exception.h>

namespace bqlutil {
namespace {

constexpr int kClosed = -1;
// Read and write for everyone the umask lets through, as for any file a program creates.
constexpr mode_t kCreationMode = 0666;

}  // namespace

std::shared_ptr<AppendingFileStream> AppendingFileStream::open(const std::string& path) {
  const int descriptor =
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kCreationMode);
  if (descriptor == kClosed) {
    return nullptr;
  }
  return std::shared_ptr<AppendingFileStream>(new AppendingFileStream(descriptor));
}

AppendingFileStream::AppendingFileStream(int descriptor) : descriptor_(descriptor) {}

AppendingFileStream::~AppendingFileStream() {
  if (descriptor_ != kClosed) {
    ::close(descriptor_);
  }
}

void AppendingFileStream::close(log4cxx::helpers::Pool& /*pool*/) {
  if (descriptor_ != kClosed) {
    ::close(descriptor_);
    descriptor_ = kClosed;
  }
}

void AppendingFileStream::flush(log4cxx::helpers::Pool& /*pool*/) {}

void AppendingFileStream::write(log4cxx::helpers::ByteBuffer& buffer,
                                log4cxx::helpers::Pool& /*pool*/) {
  while (buffer.remaining() > 0) {
    const ssize_t written = ::write(descriptor_, buffer.current(), buffer.remaining());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      throw log4cxx::helpers::IOException(written < 0 ? errno : EIO);
    }
    buffer.position(buffer.position() + static_cast<std::size_t>(written));
  }
}

}  // namespace bqlutil
