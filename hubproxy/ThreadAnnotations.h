// Clang thread-safety attributes, spelled as macros so that g++ sees nothing.
#pragma once

#if defined(__clang__)
#define BQL_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define BQL_THREAD_ANNOTATION(x)
#endif

#define BQL_CAPABILITY(x) BQL_THREAD_ANNOTATION(capability(x))
#define BQL_SCOPED_CAPABILITY BQL_THREAD_ANNOTATION(scoped_lockable)
#define BQL_GUARDED_BY(x) BQL_THREAD_ANNOTATION(guarded_by(x))
#define BQL_PT_GUARDED_BY(x) BQL_THREAD_ANNOTATION(pt_guarded_by(x))
#define BQL_ACQUIRE(...) BQL_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define BQL_RELEASE(...) BQL_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define BQL_REQUIRES(...) BQL_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define BQL_EXCLUDES(...) BQL_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
