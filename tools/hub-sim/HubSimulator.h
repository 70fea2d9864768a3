// The simulated hub: owns the hub's port, shows every record it receives, answers the plug-in's
// active-device requests and sends records on command. Everything but the pipe's receiving thread
// runs on the thread that runs `events`; received blocks are handed over to it.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "AsioEvents.h"

#include "HubCommand.h"
#include "HubPipe.h"
#include "RecordFormat.h"

class HubSimulator {
public:
    HubSimulator(boost::asio::io_context& events, bool json, std::optional<std::string> activeDevice,
                 std::ostream& out, std::ostream& err);
    HubSimulator(const HubSimulator&) = delete;
    HubSimulator& operator=(const HubSimulator&) = delete;

    // Takes the hub's port and announces it. False, with the reason shown, when the port directory
    // is refused or another live process owns the port.
    bool Start();
    // Releases the port; nothing is received afterwards.
    void Stop();

    // Carries out a command other than sleep and quit, which belong to whoever feeds the commands.
    void Execute(const HubCommand& command);
    void ShowError(const std::string& text);

private:
    void OnBlock(const std::vector<unsigned char>& block);
    void Answer(const ColloqCallArgs& request);
    void FollowSetRequest(uint32_t productId);
    void SendRecord(ColloqCallArgs record);
    void SendReport();
    void Show(const ColloqCallArgs& record, Direction direction);
    void ShowNotice(const std::string& kind, const std::string& text);

    boost::asio::io_context& events;
    const bool json;
    std::optional<std::string> activeDevice;
    std::ostream& out;
    std::ostream& err;
    HubPipe pipe;
};
