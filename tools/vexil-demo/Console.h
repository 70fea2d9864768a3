// One line per thing that happens, tagged with the thread it happened on, so that a reader
// sees the softphone's commands on its own thread and the runtime's events on the runtime's.
#pragma once

#include <string>

namespace demo {

class Console {
public:
    // The heading and the column titles.
    static void banner();
    // What the calling thread did or heard.
    static void line(const std::string& text);
    // What the user does next with the headset.
    static void action(const std::string& text);
    // The closing line.
    static void summary(const std::string& text);
};

// The name the kernel knows the calling thread by.
std::string threadName();

}  // namespace demo
