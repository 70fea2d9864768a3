/*
 * The client's interface as the C compiler lays it out: AccessoryLayoutC.c reports the sizes and
 * offsets it sees so that the C++ tests can compare them with their own view and with the
 * layout the client uses.
 */
#ifndef SDKTEST_ACCESSORY_LAYOUT_C_H
#define SDKTEST_ACCESSORY_LAYOUT_C_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct SdkLayoutEntry {
    const char* member;
    size_t offset;
} SdkLayoutEntry;

typedef struct SdkLayoutTable {
    size_t size;                   /* sizeof the structure */
    const SdkLayoutEntry* entries; /* one per named member */
    size_t count;
} SdkLayoutTable;

SdkLayoutTable sdk_c_call_info_layout(void);
SdkLayoutTable sdk_c_call_control_layout(void);
SdkLayoutTable sdk_c_callback_layout(void);
SdkLayoutTable sdk_c_logger_api_layout(void);
size_t sdk_c_logger_record_size(void);

/* The header's constants as C sees them (their C casts cannot be expanded in C++ code built
 * with -Wold-style-cast). */
uint32_t sdk_c_call_control_selector(void);
uint32_t sdk_c_logger_selector(void);
int16_t sdk_c_failure_status(void);

#ifdef __cplusplus
}
#endif

#endif /* SDKTEST_ACCESSORY_LAYOUT_C_H */
