// Sets or clears one environment variable and puts the old value back at the end of the scope.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace bqlutil_test {

class ScopedEnvironmentVariable {
 public:
  explicit ScopedEnvironmentVariable(std::string name) : name_(std::move(name)) {
    if (const char* value = std::getenv(name_.c_str())) {
      saved_ = value;
    }
  }
  ~ScopedEnvironmentVariable() {
    if (saved_) {
      setenv(name_.c_str(), saved_->c_str(), 1);
    } else {
      unsetenv(name_.c_str());
    }
  }
  ScopedEnvironmentVariable(const ScopedEnvironmentVariable&) = delete;
  ScopedEnvironmentVariable& operator=(const ScopedEnvironmentVariable&) = delete;

  void set(const std::string& value) { setenv(name_.c_str(), value.c_str(), 1); }
  void unset() { unsetenv(name_.c_str()); }

 private:
  std::string name_;
  std::optional<std::string> saved_;
};

}  // namespace bqlutil_test
