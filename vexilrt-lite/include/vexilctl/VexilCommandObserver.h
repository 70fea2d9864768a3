/*
 * Watching the call commands as the runtime takes them: a host that times the softphone's
 * commands (a benchmark, a timeline) is told about each one at the moment it is logged, instead
 * of polling the command log.
 */
#ifndef VEXILCTL_VEXIL_COMMAND_OBSERVER_H
#define VEXILCTL_VEXIL_COMMAND_OBSERVER_H

#include "vexilctl/VexilControl.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Called on the softphone's thread that issued the command, right after the command log took
 * it, with no lock of the runtime held. It must return quickly and must not throw. */
typedef void (*VexilCtlCommandObserver)(const VexilCtlCommand* command, void* context);

/* Replaces the observer; null removes it. A call to the previous observer already running may
 * still finish after this returns. */
VEXILCTL_API int32_t vexilctl_set_command_observer(VexilCtlCommandObserver observer, void* context);

#ifdef __cplusplus
}
#endif

#endif /* VEXILCTL_VEXIL_COMMAND_OBSERVER_H */
