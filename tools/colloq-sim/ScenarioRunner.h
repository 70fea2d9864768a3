// Carries out scenario commands against a session, one after the other, and checks the
// expectations. The plug-in is started before the first command that needs it.
#pragma once

#include <chrono>
#include <string>

#include "ScenarioParser.h"
#include "Session.h"
#include "Timeline.h"

namespace colloqsim {

struct RunResult {
    bool ok = true;
    std::string message;  // for a failure: "file:line: ..." with what happened instead
    bool startFailed = false;  // the plug-in could not be started
};

class ScenarioRunner {
public:
    ScenarioRunner(Session& session, Timeline& timeline, std::chrono::milliseconds expectTimeout);

    RunResult execute(const ScenarioCommand& command);
    // Every command in order; stops at the first failure.
    RunResult run(const Scenario& scenario);

private:
    std::string act(const ScenarioCommand& command);
    std::string clientAct(const ScenarioCommand& command);
    std::string headsetPath(const std::string& name, std::string* error) const;
    RunResult expect(const ScenarioCommand& command);
    // A headset's name as argument stands for its device.
    EventPattern resolved(EventPattern pattern) const;

    Session& session_;
    Timeline& timeline_;
    std::chrono::milliseconds expectTimeout_;
};

}  // namespace colloqsim
