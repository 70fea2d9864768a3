// The softphone the simulator plays: its calls with their states, its audio device and mute
// state, and how it reacts both to its user (and the far end) and to the plug-in's call-control
// operations. Pure state, no threads and no plug-in: every operation returns what the client
// noticed and which callbacks it fires, in order, and the caller fires them. Not thread-safe;
// ModelClient guards it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hostharness/CallbackRegistry.h"
#include "hostharness/RecordedCall.h"

namespace colloqsim {

// Something the client did or noticed, e.g. verb "answered" with argument "17".
struct ClientFact {
    std::string verb;
    std::string argument;
    std::string detail;  // readable extra text for the timeline, may be empty
};

struct Firing {
    hostharness::CallbackSlot slot = hostharness::CallbackSlot::OnIncoming;
    hostharness::CallbackArgs args;
};

struct ClientOutcome {
    std::string error;  // non-empty when the request was refused; nothing changed then
    std::vector<ClientFact> facts;
    std::vector<Firing> firings;

    bool ok() const { return error.empty(); }
};

class ClientModel {
public:
    // Calls the client places itself (dialled from a headset) get ids from here upwards.
    static constexpr int32_t kFirstOwnCallId = 100;

    // The far end calls: a ringing call fires onIncoming, or onCallWaiting when `waiting`.
    ClientOutcome incoming(int32_t id, const std::string& number, const std::string& name, bool waiting);
    // The user dials in the client: the far end alerts (onRemoteAlerting).
    ClientOutcome outgoing(int32_t id, const std::string& number, const std::string& name);
    ClientOutcome remoteAnswers(int32_t id);
    ClientOutcome remoteHangsUp(int32_t id);
    ClientOutcome remoteBusy(int32_t id);
    // The user works the client's own window.
    ClientOutcome userAnswers(int32_t id);
    ClientOutcome userHangsUp(int32_t id);
    ClientOutcome userHolds(int32_t id);
    ClientOutcome userResumes(int32_t id);
    ClientOutcome userMutes();
    ClientOutcome userUnmutes();
    // The user picks an audio device in the client's settings (onActiveDeviceChanged).
    ClientOutcome chooseDevice(const std::string& clientDeviceId);

    // A call-control operation of the plug-in, as the harness journalled it.
    ClientOutcome react(const hostharness::RecordedCall& operation);

    // What getCalls reports: every current call, oldest first.
    std::vector<hostharness::CallDescription> calls() const;
    const std::string& audioDevice() const { return audioDevice_; }
    bool muted() const { return muted_; }
    int foregroundCount() const { return foregroundCount_; }

private:
    hostharness::CallDescription* find(int32_t id);
    // The newest call in this state, null when none.
    hostharness::CallDescription* newestIn(int32_t state);
    ClientOutcome unknownCall(int32_t id) const;
    ClientOutcome ignored(const std::string& operation, const std::string& why) const;
    void fire(ClientOutcome& outcome, hostharness::CallbackSlot slot, const hostharness::CallDescription& call) const;
    // Connects the call, putting a call that was connected on hold first.
    void connect(ClientOutcome& outcome, hostharness::CallDescription& call, const char* verb);
    void hold(ClientOutcome& outcome, hostharness::CallDescription& call);
    void end(ClientOutcome& outcome, int32_t id, const char* verb);
    void setMuted(ClientOutcome& outcome, bool muted);
    ClientOutcome placeCall(int32_t id, const std::string& number, const std::string& name, const char* verb);

    ClientOutcome answerCall();
    ClientOutcome endCall();
    ClientOutcome rejectCall();
    ClientOutcome holdCall();
    ClientOutcome resumeCall();
    ClientOutcome makeCall(const std::string& number);
    ClientOutcome sendDtmf(char key);

    std::vector<hostharness::CallDescription> calls_;
    std::string audioDevice_;
    bool muted_ = false;
    int foregroundCount_ = 0;
    int32_t nextOwnCallId_ = kFirstOwnCallId;
};

}  // namespace colloqsim
