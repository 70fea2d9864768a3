#include "ThreadCensus.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace colloqvalidate {

std::vector<std::string> liveThreadNames() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", error)) {
        std::ifstream comm(task.path() / "comm");
        std::string name;
        // A thread that ended while the folder was read has no name any more: not counted.
        if (std::getline(comm, name)) {
            names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

ThreadComparison compareThreads(const std::vector<std::string>& before, const std::vector<std::string>& after) {
    ThreadComparison result;
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(result.leftOver));
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(result.vanished));
    const bool receiverBefore = std::find(before.begin(), before.end(), kPipeReceiverThread) != before.end();
    const auto receiver = std::find(result.leftOver.begin(), result.leftOver.end(), kPipeReceiverThread);
    if (!receiverBefore && receiver != result.leftOver.end()) {
        result.leftOver.erase(receiver);
        result.pipeReceiverStayed = true;
    }
    return result;
}

std::string joinNames(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

}  // namespace colloqvalidate
