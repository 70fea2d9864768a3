/* The system's <pthread.h> plus Apple's variant of pthread_setname_np, which names only the
 * calling thread. Given only to the Apple thread-name code when it is built off Apple systems. */
#ifndef BQL_APPLE_DECLS_PTHREAD_H
#define BQL_APPLE_DECLS_PTHREAD_H

#include_next <pthread.h>

#ifdef __cplusplus
int pthread_setname_np(const char* name);
#endif

#endif
