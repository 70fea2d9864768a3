#include "Console.h"

#include <pthread.h>

#include <cstdio>
#include <mutex>

namespace demo {

namespace {

// Lines of different threads never interleave.
std::mutex& consoleMutex() {
    static std::mutex mutex;
    return mutex;
}

void print(const char* marker, const std::string& text) {
    const std::string thread = threadName();
    std::lock_guard<std::mutex> lock(consoleMutex());
    std::printf("%-13s %s %s\n", thread.c_str(), marker, text.c_str());
    std::fflush(stdout);
}

}  // namespace

void Console::banner() {
    std::lock_guard<std::mutex> lock(consoleMutex());
    std::printf("A softphone session against the substitute Vexil runtime\n\n");
    std::printf("%-13s    %s\n", "thread", "what happened");
    std::printf("%-13s    %s\n", "-------------", "-------------------------------------------------------------");
}

void Console::line(const std::string& text) {
    print("  ", text);
}

void Console::action(const std::string& text) {
    print(">>", text);
}

void Console::summary(const std::string& text) {
    std::lock_guard<std::mutex> lock(consoleMutex());
    std::printf("\n%s\n", text.c_str());
    std::fflush(stdout);
}

std::string threadName() {
    char name[32] = {};
    if (pthread_getname_np(pthread_self(), name, sizeof name) != 0) {
        return "?";
    }
    return name;
}

}  // namespace demo
