#include "ThreadCensus.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <system_error>
#include <thread>

namespace colloqvalidate {

namespace {

// ThreadSanitizer starts a helper thread of its own when the process starts its first thread,
// and that thread never ends. One thread started and joined before the first count puts it
// into every baseline instead of making it look like a thread the plug-in left behind.
void letRuntimeHelpersStart() {
    static std::once_flag started;
    std::call_once(started, [] {
        try {
            std::thread([] {}).join();
        } catch (const std::system_error&) {
            // No thread could be started: then no helper started either.
        }
    });
}

}  // namespace

std::vector<std::string> liveThreadNames() {
    letRuntimeHelpersStart();
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

ThreadComparison compareThreads(const std::vector<std::string>& before, const std::vector<std::string>& after,
                                const std::vector<std::string>& hostThreads) {
    ThreadComparison result;
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(result.leftOver));
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(result.vanished));
    const auto ofTheHost = [&hostThreads](const std::string& name) {
        return std::find(hostThreads.begin(), hostThreads.end(), name) != hostThreads.end();
    };
    result.leftOver.erase(std::remove_if(result.leftOver.begin(), result.leftOver.end(), ofTheHost),
                          result.leftOver.end());
    result.vanished.erase(std::remove_if(result.vanished.begin(), result.vanished.end(), ofTheHost),
                          result.vanished.end());
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
