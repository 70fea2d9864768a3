// A log4cxx output stream that appends to a file opened by its path bytes exactly as given.
// log4cxx's own file streams pass paths through the process locale first, which turns every
// non-ASCII folder name into question marks in a program that never set a locale.
#pragma once

#include <memory>
#include <string>

#include <log4cxx/helpers/outputstream.h>

namespace bqlutil {

class AppendingFileStream final : public log4cxx::helpers::OutputStream {
 public:
  // Null when the file can neither be opened nor created for appending.
  static std::shared_ptr<AppendingFileStream> open(const std::string& path);

  ~AppendingFileStream() override;

  void close(log4cxx::helpers::Pool& pool) override;
  // Every write goes straight to the file; there is nothing to flush.
  void flush(log4cxx::helpers::Pool& pool) override;
  // Throws log4cxx's IOException when the file refuses the bytes, as log4cxx streams do.
  void write(log4cxx::helpers::ByteBuffer& buffer, log4cxx::helpers::Pool& pool) override;

 private:
  explicit AppendingFileStream(int descriptor);

  // Used only under the appender's own lock.
  int descriptor_;
};

}  // namespace bqlutil
