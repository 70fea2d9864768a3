/* The part of libdispatch that our Apple code uses, declared for builds off Apple systems that
 * compile that code against a stand-in. Names and signatures are Apple's public ones. */
#ifndef BQL_APPLE_DECLS_DISPATCH_H
#define BQL_APPLE_DECLS_DISPATCH_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef void (*dispatch_function_t)(void* context);
typedef struct dispatch_queue_s* dispatch_queue_t;
typedef intptr_t dispatch_once_t;

dispatch_queue_t dispatch_get_main_queue(void);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
void dispatch_once_f(dispatch_once_t* predicate, void* context, dispatch_function_t function);

#ifdef __cplusplus
}
#endif

#endif
