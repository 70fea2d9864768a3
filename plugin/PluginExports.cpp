// The plug-in's two entry points. Nothing escapes into the client: both return 0, and an
// error is written to the local log instead.
#include "colloq/AccessoryAPI.h"
#include "plugin/BQLColloqPlugin.h"
#include "plugin/NoThrowBoundary.h"

#define BQL_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

BQL_PLUGIN_EXPORT int initialize(accessoryAPIEntryPoint_t entry) {
    return runWithoutEscaping("int initialize(accessoryAPIEntryPoint_t)", [entry] {
        BQLColloqPlugin::getInstance()->Start(entry);
    });
}

BQL_PLUGIN_EXPORT int uninitialize(void) {
    return runWithoutEscaping("int uninitialize()", [] { BQLColloqPlugin::getInstance()->Stop(); });
}
