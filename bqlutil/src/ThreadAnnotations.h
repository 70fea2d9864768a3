// Clang's thread-safety attributes; other compilers see nothing.
#pragma once

#if defined(__clang__)
#define BQLUTIL_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define BQLUTIL_THREAD_ANNOTATION(x)
#endif

#define CAPABILITY(x) BQLUTIL_THREAD_ANNOTATION(capability(x))
#define SCOPED_CAPABILITY BQLUTIL_THREAD_ANNOTATION(scoped_lockable)
#define GUARDED_BY(x) BQLUTIL_THREAD_ANNOTATION(guarded_by(x))
#define ACQUIRE(...) BQLUTIL_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define ACQUIRE_SHARED(...) BQLUTIL_THREAD_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define RELEASE(...) BQLUTIL_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define RELEASE_SHARED(...) BQLUTIL_THREAD_ANNOTATION(release_shared_capability(__VA_ARGS__))
#define RELEASE_GENERIC(...) BQLUTIL_THREAD_ANNOTATION(release_generic_capability(__VA_ARGS__))
#define EXCLUDES(...) BQLUTIL_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
