#include "HubModeSimulator.h"

#include <sys/wait.h>

#include <csignal>
#include <sstream>

#include <gtest/gtest.h>

#include "JsonLine.h"

namespace e2e {

namespace {

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds leftUntil(Clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return left.count() > 0 ? left : std::chrono::milliseconds(0);
}

HubRecord recordFrom(const boost::property_tree::ptree& json) {
    HubRecord record;
    record.received = json.get<std::string>("direction", "") == "received";
    record.messageType = json.get<int64_t>("messageType", -1);
    record.callState = json.get<int64_t>("callState", -1);
    record.deviceAction = json.get<int64_t>("deviceAction", -1);
    record.callId = json.get<int64_t>("callId", 0);
    record.devicePath = json.get<std::string>("devicePath", "");
    record.contactName = json.get<std::string>("contactName", "");
    record.phoneNumber = json.get<std::string>("phoneNumber", "");
    record.extraText = json.get<std::string>("extraText", "");
    record.dtmfKeys = json.get<std::string>("dtmfKeys", "");
    record.productId = json.get<int64_t>("productId", -1);
    return record;
}

}  // namespace

std::string describe(const HubRecord& record) {
    std::ostringstream text;
    text << (record.received ? "received" : "sent") << " type=" << record.messageType << " state=" << record.callState
         << " action=" << record.deviceAction << " callId=" << record.callId << " device=\"" << record.devicePath
         << "\" contact=\"" << record.contactName << "\" number=\"" << record.phoneNumber << "\" keys=\""
         << record.dtmfKeys << "\" productId=" << record.productId;
    return text.str();
}

bool HubSimulatorProcess::start() {
    child = std::make_unique<ChildProcess>(HUB_SIM_PATH, std::vector<std::string>{"--json"});
    if (!child->started()) {
        child.reset();
        return false;
    }
    const std::optional<std::string> listening = child->ReadLineContaining("\"listening\"");
    if (!listening) {
        stop();
        return false;
    }
    return true;
}

bool HubSimulatorProcess::stop() {
    if (!child) {
        return true;
    }
    child->Signal(SIGTERM);
    const std::optional<int> status = child->Wait();
    // The destructor kills a simulator that did not end in time.
    child.reset();
    return status && WIFEXITED(*status) && WEXITSTATUS(*status) == 0;
}

bool HubSimulatorProcess::command(const std::string& line) { return child && child->WriteLine(line); }

std::optional<HubRecord> HubSimulatorProcess::nextReceived(std::chrono::milliseconds limit) {
    return take([](const HubRecord& record) { return record.received; }, limit);
}

std::optional<HubRecord> HubSimulatorProcess::receivedMatching(const Match& match, std::chrono::milliseconds limit) {
    return take([&match](const HubRecord& record) { return record.received && match(record); }, limit);
}

std::optional<HubRecord> HubSimulatorProcess::sentMatching(const Match& match, std::chrono::milliseconds limit) {
    return take([&match](const HubRecord& record) { return !record.received && match(record); }, limit);
}

std::optional<HubRecord> HubSimulatorProcess::take(const Match& match, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    std::size_t next = 0;
    for (;;) {
        for (; next < shown.size(); ++next) {
            if (!shown[next].taken && match(shown[next].record)) {
                shown[next].taken = true;
                return shown[next].record;
            }
        }
        if (!readOne(deadline)) {
            return std::nullopt;
        }
    }
}

bool HubSimulatorProcess::readOne(Clock::time_point deadline) {
    while (child) {
        const std::optional<std::string> line = child->ReadLine(leftUntil(deadline));
        if (!line) {
            return false;
        }
        const boost::property_tree::ptree json = ParseJsonLine(*line);
        if (json.get<std::string>("notice", "") == "error") {
            ADD_FAILURE() << "the hub simulator reports: " << json.get<std::string>("text", "");
            continue;
        }
        if (json.count("blockLength") != 0) {
            ADD_FAILURE() << "the plug-in sent a block that is no record: " << *line;
            continue;
        }
        if (json.count("direction") == 0) {
            continue;  // the simulator's other notices
        }
        shown.push_back(Shown{recordFrom(json), false});
        return true;
    }
    return false;
}

}  // namespace e2e
