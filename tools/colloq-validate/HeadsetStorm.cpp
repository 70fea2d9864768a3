#include "HeadsetStorm.h"

#include <array>
#include <chrono>
#include <random>

#include "NamedThread.h"

namespace colloqvalidate {

namespace {

using namespace std::chrono_literals;

constexpr const char* kResident = "resident";
constexpr std::array<const char*, 3> kExtras = {"extra-1", "extra-2", "extra-3"};
constexpr std::array<const char*, 8> kButtons = {"answer", "end", "hold", "resume", "mute", "unmute", "reject", "select"};
constexpr int32_t kHighestCallId = 16;
// Presses come a few milliseconds apart; every so many the runtime is let deliver them all.
constexpr int kPressesBetweenDeliveries = 32;
constexpr auto kDeliveryTimeout = 10s;

colloqsim::Headset headsetNamed(const std::string& name, uint16_t productId) {
    colloqsim::Headset headset;
    headset.name = name;
    headset.model = "Model 5.1-X." + std::to_string(productId & 0xf);
    headset.productId = productId;
    headset.hasDisplay = (productId & 1) != 0;
    return headset;
}

}  // namespace

bool HeadsetStorm::plugResident(std::string* error) {
    *error = headsets_.plug(headsetNamed(kResident, 0x0a1b), "VALIDATE-R");
    return error->empty();
}

std::string HeadsetStorm::residentClientDevice() const {
    const colloqsim::Headset* resident = headsets_.find(kResident);
    return resident ? colloqsim::HeadsetDriver::clientDeviceId(*resident) : "";
}

std::string HeadsetStorm::residentPath() const {
    const colloqsim::Headset* resident = headsets_.find(kResident);
    return resident ? resident->path : "";
}

bool HeadsetStorm::start(uint32_t seed, std::string* error) {
    return startNamedThread(thread_, "headsets", [this, seed] { run(seed); }, error);
}

void HeadsetStorm::join() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void HeadsetStorm::unplugAll() {
    for (const char* extra : kExtras) {
        if (headsets_.find(extra) != nullptr) {
            headsets_.unplug(extra);
        }
    }
    if (headsets_.find(kResident) != nullptr) {
        headsets_.unplug(kResident);
    }
}

void HeadsetStorm::toggleExtra(int which) {
    const char* name = kExtras[static_cast<std::size_t>(which)];
    if (headsets_.find(name) != nullptr) {
        if (headsets_.unplug(name).empty()) {
            unplugs_.fetch_add(1);
        }
        return;
    }
    const auto productId = static_cast<uint16_t>(0x0a20 + which);
    if (headsets_.plug(headsetNamed(name, productId), "VALIDATE-" + std::to_string(which + 1)).empty()) {
        plugs_.fetch_add(1);
    }
}

void HeadsetStorm::run(uint32_t seed) {
    std::mt19937 random(seed ^ 0x5eed5u);
    std::uniform_int_distribution<int> percent(0, 99);
    std::uniform_int_distribution<int> pause(1, 8);
    std::uniform_int_distribution<int32_t> callId(-1, kHighestCallId);
    int sinceDelivery = 0;
    while (!stop_.waitFor(std::chrono::milliseconds(pause(random)))) {
        const int roll = percent(random);
        if (roll < 5) {
            toggleExtra(std::uniform_int_distribution<int>(0, static_cast<int>(kExtras.size()) - 1)(random));
            continue;
        }
        // A headset plugged in right now: the resident one or an extra.
        const auto& plugged = headsets_.headsets();
        const std::string name = plugged[std::uniform_int_distribution<std::size_t>(0, plugged.size() - 1)(random)].name;
        std::string refused;
        if (roll < 8) {
            refused = headsets_.dial(name, "+4940" + std::to_string(percent(random)));
        } else if (roll < 15) {
            refused = headsets_.keys(name, std::to_string(percent(random) % 10) + "#", callId(random));
        } else {
            refused = headsets_.press(name, kButtons[static_cast<std::size_t>(percent(random)) % kButtons.size()],
                                      callId(random));
        }
        // The runtime refuses reports while the plug-in has no session (between a disconnect
        // and the next connect): those are not sent, and not counted.
        if (refused.empty()) {
            presses_.fetch_add(1);
            tally_.noteHeadsetReport();
        }
        if (++sinceDelivery >= kPressesBetweenDeliveries) {
            sinceDelivery = 0;
            if (!headsets_.waitIdle(kDeliveryTimeout)) {
                problems_.note({"the plug-in takes the headsets' reports",
                                "the runtime could not deliver its events within " +
                                    std::to_string(kDeliveryTimeout.count()) + " s"});
                return;
            }
        }
    }
}

}  // namespace colloqvalidate
