// Changes one environment variable for the life of the object, then puts the old value back
// (or removes the variable again when it had none).
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>
#include <utility>

namespace bqltest {

class ScopedEnvironment {
public:
    // Remembers the current value and changes nothing yet.
    explicit ScopedEnvironment(std::string name) : name_(std::move(name)) {
        if (const char* current = ::getenv(name_.c_str())) {
            previous_ = current;
        }
    }
    // Sets the variable to `value`; std::nullopt removes it.
    ScopedEnvironment(std::string name, const std::optional<std::string>& value) : ScopedEnvironment(std::move(name)) {
        apply(value);
    }
    ~ScopedEnvironment() { apply(previous_); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

    void set(const std::string& value) { apply(value); }
    void unset() { apply(std::nullopt); }

private:
    void apply(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(name_.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> previous_;
};

}  // namespace bqltest
