// Sets an environment variable for the life of the object, then puts the old value back.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>
#include <utility>

class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, const std::string& value) : name_(std::move(name)) {
        if (const char* old = ::getenv(name_.c_str())) {
            previous_ = old;
        }
        ::setenv(name_.c_str(), value.c_str(), 1);
    }
    ~ScopedEnvironment() {
        if (previous_) {
            ::setenv(name_.c_str(), previous_->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string name_;
    std::optional<std::string> previous_;
};
