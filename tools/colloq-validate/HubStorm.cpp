#include "HubStorm.h"

#include <array>
#include <chrono>
#include <optional>
#include <random>

#include "HubDriver.h"
#include "NamedThread.h"

namespace colloqvalidate {

namespace {

using namespace std::chrono_literals;

constexpr auto kHubStartTimeout = 10s;
constexpr std::array<const char*, 7> kActions = {"accept", "terminate", "hold", "resume", "mute", "unmute", "reject"};
constexpr int32_t kHighestCallId = 16;

}  // namespace

bool HubStorm::start(const std::string& program, const std::string& device, uint32_t seed, std::string* error) {
    return startNamedThread(
        thread_, "hub-toggle", [this, program, device, seed] { run(program, device, seed); }, error);
}

void HubStorm::join() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void HubStorm::run(std::string program, std::string device, uint32_t seed) {
    std::mt19937 random(seed ^ 0x4b0bu);
    // On for 1.5 to 3.5 s, off as long: the plug-in looks for the hub every 2 s.
    std::uniform_int_distribution<int> phaseMs(1500, 3500);
    std::uniform_int_distribution<int> eventPauseMs(50, 250);
    std::uniform_int_distribution<int32_t> callId(1, kHighestCallId);
    std::uniform_int_distribution<std::size_t> action(0, kActions.size() - 1);
    while (!stop_.waitFor(std::chrono::milliseconds(phaseMs(random)))) {
        // A fresh driver for every run of the simulator.
        colloqsim::HubDriver hub(timeline_);
        const std::string refused = hub.start(program, device, kHubStartTimeout);
        if (!refused.empty()) {
            problems_.note({"the hub simulator starts", program + ": " + refused});
            return;
        }
        starts_.fetch_add(1);
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(phaseMs(random));
        while (std::chrono::steady_clock::now() < until &&
               !stop_.waitFor(std::chrono::milliseconds(eventPauseMs(random)))) {
            if (hub.event(kActions[action(random)], callId(random), std::nullopt, "").empty()) {
                reports_.fetch_add(1);
                tally_.noteHeadsetReport();
            }
        }
        const std::string unclean = hub.stop();
        if (!unclean.empty()) {
            problems_.note({"the hub simulator stops", unclean});
            return;
        }
    }
}

}  // namespace colloqvalidate
