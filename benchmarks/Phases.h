// The measurements, one function (and one file) each. Every phase that needs the plug-in finds it
// initialized with the headset chosen, and leaves it so; a phase that cannot finish says why in
// its figures instead of reporting numbers.
#pragma once

#include "Options.h"
#include "PluginSession.h"
#include "Results.h"

namespace bench {

// initialize -> connected and uninitialize, `lifecycleRuns` times. Needs the plug-in
// uninitialized, leaves it so.
void runLifecycle(PluginSession& session, const Options& options, Results& results);
// CPU time of the idle, loaded plug-in over the idle window.
void runIdle(const Options& options, Results& results);
// Calls in direct mode: onIncoming -> incomingCall, accept -> answerCall, with their lower bounds
// beside them, and the resident memory after 0, events/10 and events calls.
void runDirectCalls(PluginSession& session, const Options& options, Results& results);
// Events per second with 1, 4 and 8 client threads against the bare locked list.
void runThroughput(PluginSession& session, const Options& options, Results& results);
// Hub mode: plug-in -> hub record and hub record -> answerCall, with the raw datagram bounds.
// Needs the plug-in uninitialized; starts the hub process, and leaves the plug-in uninitialized.
void runHubPaths(PluginSession& session, const Options& options, Results& results);
// onActiveDeviceChanged with every hostile device name, `nameRounds` times each, on a thread with
// the client's 512 KiB secondary stack, beside a short valid name of a device that is not listed.
void runDeviceNames(PluginSession& session, const Options& options, Results& results);

}  // namespace bench
