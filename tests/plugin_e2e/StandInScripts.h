// Shell scripts put first in PATH for one test, standing in for the tools the plug-in's hub check
// runs ("ps" piped into "grep"), and the file in which they count the checks.
#pragma once

#include <string>

namespace e2e {

// PATH as the process has it, or the system's default when it is unset.
std::string currentPath();
// The first executable `name` along `path`, or "" when there is none.
std::string findProgram(const std::string& path, const std::string& name);
// Writes `body` after a "#!/bin/sh" line into `file` and makes it executable by its owner.
bool writeScript(const std::string& file, const std::string& body);
// The lines of `file` (the checks a counting script noted), 0 when there is none yet.
int countLines(const std::string& file);

// Sets PATH and puts the earlier value back when restored or destroyed.
class PathOverride {
public:
    ~PathOverride() { restore(); }
    bool set(const std::string& path);
    void restore();

private:
    std::string saved;
    bool active = false;
};

}  // namespace e2e
