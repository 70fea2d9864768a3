// The threads of this process by name, read from /proc/self/task, and whether a plug-in left
// any behind. The one thread a plug-in may leave is its hub pipe's receiver: the handler
// singletons keep it, so at most one of it may outlive uninitialize.
#pragma once

#include <string>
#include <vector>

namespace colloqvalidate {

// The name the hub pipe's receiving thread carries.
constexpr const char* kPipeReceiverThread = "bql-pipe-rx";

// The names of every thread of this process, sorted (several may share a name).
std::vector<std::string> liveThreadNames();

struct ThreadComparison {
    // Threads present after but not before (one entry per thread), the allowed one excluded.
    std::vector<std::string> leftOver;
    // Threads present before but gone after.
    std::vector<std::string> vanished;
    // Whether the hub pipe's receiver stayed behind, as it is allowed to.
    bool pipeReceiverStayed = false;

    bool clean() const { return leftOver.empty(); }
};

// Compares two sorted name lists. One pipe receiver that is new after is allowed as long as no
// other one existed before; threads named in hostThreads belong to the host's environment (the
// thread behind a main dispatch queue, say) and are not counted; anything else new is left over.
ThreadComparison compareThreads(const std::vector<std::string>& before, const std::vector<std::string>& after,
                                const std::vector<std::string>& hostThreads = {});

// "a, b, c" for a report.
std::string joinNames(const std::vector<std::string>& names);

}  // namespace colloqvalidate
