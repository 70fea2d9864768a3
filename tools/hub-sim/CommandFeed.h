// Feeds commands to the simulator: first the given lines (from the command line and a script
// file), then standard input unless that is switched off, in which case the simulator serves until
// a signal. Sleeps wait on a timer and input is read without blocking, so that SIGINT, SIGTERM and
// SIGHUP (the terminal it was typed into went away) always end the loop at once.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "AsioEvents.h"
#include "HubSimulator.h"

class CommandFeed {
public:
    CommandFeed(boost::asio::io_context& events, HubSimulator& simulator, std::deque<std::string> lines,
                bool readInput);
    // Gives standard input back as it was found.
    ~CommandFeed();
    CommandFeed(const CommandFeed&) = delete;
    CommandFeed& operator=(const CommandFeed&) = delete;

    // Starts working through the commands; the loop of `events` stops once they end.
    void Start();

private:
    void RunNext();
    void ReadInput();
    void TakeInputLine(std::size_t length);
    void Finish();

    boost::asio::io_context& events;
    HubSimulator& simulator;
    std::deque<std::string> lines;
    const bool readInput;
    boost::asio::signal_set signals;
    boost::asio::steady_timer pause;
    // Standard input when it can be watched (a terminal, a pipe); a file is simply read.
    std::optional<boost::asio::posix::stream_descriptor> input;
    boost::asio::streambuf inputBuffer;
    int inputFlags = -1;
};
