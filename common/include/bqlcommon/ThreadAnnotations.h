// Clang's thread-safety attributes, spelled as macros so that other compilers see nothing.
#pragma once

#if defined(__clang__)
#define BQL_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define BQL_THREAD_ANNOTATION(x)
#endif

#define BQL_CAPABILITY(name) BQL_THREAD_ANNOTATION(capability(name))
#define BQL_SCOPED_CAPABILITY BQL_THREAD_ANNOTATION(scoped_lockable)
#define BQL_GUARDED_BY(mutex) BQL_THREAD_ANNOTATION(guarded_by(mutex))
#define BQL_PT_GUARDED_BY(mutex) BQL_THREAD_ANNOTATION(pt_guarded_by(mutex))
#define BQL_ACQUIRE(...) BQL_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define BQL_ACQUIRE_SHARED(...) BQL_THREAD_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define BQL_RELEASE(...) BQL_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define BQL_RELEASE_SHARED(...) BQL_THREAD_ANNOTATION(release_shared_capability(__VA_ARGS__))
#define BQL_RELEASE_GENERIC(...) BQL_THREAD_ANNOTATION(release_generic_capability(__VA_ARGS__))
#define BQL_REQUIRES(...) BQL_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define BQL_EXCLUDES(...) BQL_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
