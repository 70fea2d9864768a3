#include "HubWatch.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "HubIsolation.h"
#include "HubProtocol.h"

namespace bench {

std::vector<pid_t> foreignHubs(pid_t own) {
    std::vector<pid_t> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        if (name.empty() || name.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        std::ifstream commFile(entry.path() / "comm");
        std::string comm;
        std::getline(commFile, comm);
        const auto pid = static_cast<pid_t>(std::atol(name.c_str()));
        if (comm == kHubProcessName && pid != own) {
            found.push_back(pid);
        }
    }
    return found;
}

std::string describeForeignHubs(pid_t own) {
    if (HubIsolation::active()) {
        return "";  // the plug-in's check does not see them
    }
    const std::vector<pid_t> hubs = foreignHubs(own);
    if (hubs.empty()) {
        return "";
    }
    std::string text = "another \"Brimquell Hub\" process runs (pid";
    for (const pid_t pid : hubs) {
        text += " " + std::to_string(pid);
    }
    return text + "): the plug-in switches to hub mode at its next check, so direct-mode figures are not valid";
}

}  // namespace bench
