// The hub pipe's port folder for a run: the one $BQL_PORT_DIR names, else a private folder made
// for the run, so that the plug-in and the hub simulator of a run meet each other and nobody
// else's ports.
#pragma once

#include <string>

namespace colloqvalidate {

class PortFolder {
public:
    PortFolder() = default;
    // Removes the folder if this run made it.
    ~PortFolder();
    PortFolder(const PortFolder&) = delete;
    PortFolder& operator=(const PortFolder&) = delete;

    // Sets $BQL_PORT_DIR to a fresh private folder unless it is set; "" when done, else why not.
    std::string choose();
    const std::string& path() const { return path_; }

private:
    std::string path_;
    bool made_ = false;
};

}  // namespace colloqvalidate
