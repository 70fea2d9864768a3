// Call commands to the runtime: each client call change becomes one ICallCommand operation so
// the headset rings, lights, opens its audio link or shows mute.
#include <sstream>
#include <string>

#include "bqlutil/LogWriter.h"
#include "handlers/BQLColloqVexil.h"

namespace {

struct CommandText {
    const char* function;     // the operation's own name, as the log's function name
    const char* stem;         // "BQLColloqVexil: Incoming Call: callID = " and so on
    const char* nullMessage;  // logged when a tested pointer is null
};

// A call is named in the log by its address, not its id.
std::string pointerText(const void* pointer) {
    std::ostringstream text;
    text << pointer;
    return text.str();
}

const CommandText kIncoming{"performIncomingCall", "BQLColloqVexil: Incoming Call: callID = ",
                            "BQLColloqVexil: Failed to perform Incoming Call: NULL"};
const CommandText kOutgoing{"performOutgoingCall", "BQLColloqVexil: Outgoing Call: callID = ",
                            "BQLColloqVexil: Failed to perform Outgoing Call: NULL"};
const CommandText kTerminate{"performTerminateCall", "BQLColloqVexil: Terminate Call: callID = ",
                             "BQLColloqVexil: Failed to perform Terminate Call: NULL"};
const CommandText kAnswer{"performAnsweredCall", "BQLColloqVexil: Answer Call: callID = ",
                          "BQLColloqVexil: Failed to perform Answer Call: NULL"};
const CommandText kHold{"performHoldCall", "BQLColloqVexil: Hold Call: callID = ",
                        "BQLColloqVexil: Failed to perform Hold Call: NULL"};
const CommandText kResume{"performResumeCall", "BQLColloqVexil: Resume Call: callID = ",
                          "BQLColloqVexil: Failed to perform Resume Call: NULL"};
const CommandText kInsert{"performInsertCall", "BQLColloqVexil: Insert Call: callID = ",
                          "BQLColloqVexil: Failed to perform Insert Call: NULL"};
const CommandText kMute{"performMuteCall", "BQLColloqVexil: Mute Call: mute = ",
                        "BQLColloqVexil: Failed to perform Mute Call: NULL"};

// Issues one call command while the connection cannot be torn down, and logs its outcome.
template <typename Issue>
bool issueCommand(std::shared_mutex& connectionLock, ICallCommand* const& callCommand, const CommandText& text,
                  bool inputsPresent, const std::string& subject, Issue issue) {
    std::shared_lock<std::shared_mutex> guard(connectionLock);
    if (!inputsPresent || callCommand == nullptr) {
        LogWriter_error(text.nullMessage, text.function, "<>");
        return false;
    }
    const int32_t status = issue(callCommand);
    if (status != 0) {
        const std::string line =
            text.stem + subject + " Executing command returned error code: " + std::to_string(status);
        LogWriter_error(line.c_str(), text.function, "<>");
        return false;
    }
    const std::string line = text.stem + subject + " Successful";
    LogWriter_info(line.c_str(), text.function, "<>");
    return true;
}

}  // namespace

bool BQLColloqVexil::performIncomingCall(ICall* call, IContact* caller) {
    // The contact is not tested: the runtime takes a call without one.
    return issueCommand(connectionLock, callCommand, kIncoming, call != nullptr, pointerText(call),
                        [&](ICallCommand* command) { return command->incomingCall(call, caller, 0, 0); });
}

bool BQLColloqVexil::performOutgoingCall(ICall* call, IContact* callee) {
    return issueCommand(connectionLock, callCommand, kOutgoing, call != nullptr, pointerText(call),
                        [&](ICallCommand* command) { return command->outgoingCall(call, callee, 0); });
}

bool BQLColloqVexil::performTerminateCall(ICall* call) {
    std::lock_guard<std::mutex> serial(commandLock);
    return issueCommand(connectionLock, callCommand, kTerminate, call != nullptr, pointerText(call),
                        [&](ICallCommand* command) { return command->terminateCall(call); });
}

bool BQLColloqVexil::performAnsweredCall(ICall* call) {
    return issueCommand(connectionLock, callCommand, kAnswer, call != nullptr, pointerText(call),
                        [&](ICallCommand* command) { return command->answeredCall(call); });
}

bool BQLColloqVexil::performHoldCall(ICall* call) {
    return issueCommand(connectionLock, callCommand, kHold, call != nullptr, pointerText(call),
                        [&](ICallCommand* command) { return command->holdCall(call); });
}

bool BQLColloqVexil::performResumeCall(ICall* call) {
    return issueCommand(connectionLock, callCommand, kResume, call != nullptr, pointerText(call),
                        [&](ICallCommand* command) { return command->resumeCall(call); });
}

bool BQLColloqVexil::performInsertCall(ICall* call, IContact* contact) {
    std::lock_guard<std::mutex> serial(commandLock);
    return issueCommand(connectionLock, callCommand, kInsert, call != nullptr && contact != nullptr, pointerText(call),
                        [&](ICallCommand* command) { return command->insertCall(call, contact); });
}

bool BQLColloqVexil::performMuteCall(bool mute) {
    std::lock_guard<std::mutex> serial(commandLock);
    return issueCommand(connectionLock, callCommand, kMute, true, mute ? "true" : "false",
                        [&](ICallCommand* command) { return command->setMute(mute); });
}
