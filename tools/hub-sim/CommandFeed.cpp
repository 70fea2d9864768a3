#include "CommandFeed.h"

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

CommandFeed::CommandFeed(boost::asio::io_context& loop, HubSimulator& hub, std::deque<std::string> commands,
                         bool fromInput)
    : events(loop),
      simulator(hub),
      lines(std::move(commands)),
      readInput(fromInput),
      pause(loop) {
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGHUP);
    ::pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    const int signalSource = ::signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signalSource >= 0) {
        signals.emplace(loop, signalSource);
    } else {
        // Without the descriptor a signal ends the simulator the default way, leaving its port
        // file for the next hub to reclaim.
        ::pthread_sigmask(SIG_UNBLOCK, &ending, nullptr);
    }
    if (!readInput) {
        return;
    }
    // Asio makes the descriptor non-blocking, which would leak to whoever shares standard input.
    inputFlags = ::fcntl(STDIN_FILENO, F_GETFL);
    const int watched = ::dup(STDIN_FILENO);
    boost::system::error_code error;
    input.emplace(loop);
    if (watched >= 0) {
        input->assign(watched, error);
    }
    if (watched < 0 || error) {
        if (watched >= 0) {
            ::close(watched);
        }
        input.reset();
    }
}

CommandFeed::~CommandFeed() {
    input.reset();
    if (inputFlags != -1) {
        ::fcntl(STDIN_FILENO, F_SETFL, inputFlags);
    }
}

void CommandFeed::Start() {
    if (signals) {
        signals->async_read_some(boost::asio::buffer(&signalInfo, sizeof signalInfo),
                                 [this](const boost::system::error_code& error, std::size_t) {
                                     if (!error) {
                                         Finish();
                                     }
                                 });
    }
    boost::asio::post(events, [this] { RunNext(); });
}

void CommandFeed::RunNext() {
    while (!lines.empty()) {
        const std::string line = lines.front();
        lines.pop_front();
        HubCommand command;
        std::string error;
        if (!ParseCommand(line, command, error)) {
            simulator.ShowError(error);
            continue;
        }
        if (command.kind == HubCommand::Kind::Quit) {
            Finish();
            return;
        }
        if (command.kind == HubCommand::Kind::Sleep) {
            pause.expires_after(command.pause);
            pause.async_wait([this](const boost::system::error_code& waitError) {
                if (!waitError) {
                    RunNext();
                }
            });
            return;
        }
        simulator.Execute(command);
    }
    ReadInput();
}

void CommandFeed::ReadInput() {
    if (!readInput) {
        return;  // serve until a signal
    }
    if (!input) {
        std::string line;
        if (std::getline(std::cin, line)) {
            lines.push_back(line);
            boost::asio::post(events, [this] { RunNext(); });
        } else {
            Finish();
        }
        return;
    }
    boost::asio::async_read_until(*input, inputBuffer, '\n',
                                  [this](const boost::system::error_code& error, std::size_t length) {
                                      if (!error) {
                                          TakeInputLine(length);
                                      } else if (error != boost::asio::error::operation_aborted &&
                                                 inputBuffer.size() > 0) {
                                          // A last line without its line end.
                                          TakeInputLine(inputBuffer.size());
                                      } else {
                                          Finish();
                                      }
                                  });
}

void CommandFeed::TakeInputLine(std::size_t length) {
    std::string line(boost::asio::buffers_begin(inputBuffer.data()),
                     boost::asio::buffers_begin(inputBuffer.data()) + static_cast<std::ptrdiff_t>(length));
    inputBuffer.consume(length);
    if (!line.empty() && line.back() == '\n') {
        line.pop_back();
    }
    lines.push_back(line);
    RunNext();
}

void CommandFeed::Finish() { events.stop(); }
