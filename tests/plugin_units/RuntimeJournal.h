// What the direct handler asked of the runtime's session objects, in order. This test program
// stands in for the runtime's two session-manager getters and hands out recording wrappers
// around the runtime's own objects, so that calls the runtime keeps no trace of (a status set
// just before the session goes away, a release) can be checked. Everything is forwarded
// unchanged.
#pragma once

#include <string>
#include <vector>

namespace runtimejournal {

// Entries such as "setPluginStatus 1001 5", "ISession::Release", oldest first.
std::vector<std::string> entries();
void clear();

}  // namespace runtimejournal
