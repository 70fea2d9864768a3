// Feeds commands to the simulator: first the given lines (from the command line and a script
// file), then standard input unless that is switched off, in which case the simulator serves until
// a signal. Sleeps wait on a timer and input is read without blocking, so that SIGINT, SIGTERM and
// SIGHUP (the terminal it was typed into went away) always end the loop at once.
#pragma once

#include <sys/signalfd.h>

#include <deque>
#include <optional>
#include <string>

#include "AsioEvents.h"
#include "HubSimulator.h"

class CommandFeed {
public:
    CommandFeed(boost::asio::io_context& events, HubSimulator& simulator, std::deque<std::string> lines,
                bool readInput);
    // Blocks SIGINT, SIGTERM and SIGHUP for this thread and every thread started after it, and
    // reads them from a descriptor on the loop instead: make the feed before any other thread.
    // Gives standard input back as it was found; the signals stay blocked, so that one arriving
    // while the simulator winds down cannot cut that short.
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
    // Signals read as data on the loop's thread: no handler runs on whichever thread the
    // kernel picks, so none can be missed.
    std::optional<boost::asio::posix::stream_descriptor> signals;
    signalfd_siginfo signalInfo{};
    boost::asio::steady_timer pause;
    // Standard input when it can be watched (a terminal, a pipe); a file is simply read.
    std::optional<boost::asio::posix::stream_descriptor> input;
    boost::asio::streambuf inputBuffer;
    int inputFlags = -1;
};
