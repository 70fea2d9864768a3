// Sets or unsets an environment variable for the life of the object, then restores it.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, std::optional<std::string> value) : name_(std::move(name)) {
        if (const char* old = std::getenv(name_.c_str())) {
            previous_ = old;
        }
        Apply(value);
    }
    ~ScopedEnvironment() { Apply(previous_); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    void Apply(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(name_.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> previous_;
};
