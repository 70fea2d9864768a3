// Marks the runtime's entry functions for export; everything else in the library is hidden.
#pragma once

#define VEXIL_EXPORT __attribute__((visibility("default")))
