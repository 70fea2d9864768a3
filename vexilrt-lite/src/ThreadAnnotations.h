// Clang thread-safety attributes, so that -Wthread-safety checks which lock guards which data.
// Other compilers see empty macros.
#pragma once

#if defined(__clang__)
#define VEXIL_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define VEXIL_THREAD_ATTRIBUTE(x)
#endif

#define CAPABILITY(x) VEXIL_THREAD_ATTRIBUTE(capability(x))
#define SCOPED_CAPABILITY VEXIL_THREAD_ATTRIBUTE(scoped_lockable)
#define GUARDED_BY(x) VEXIL_THREAD_ATTRIBUTE(guarded_by(x))
#define REQUIRES(...) VEXIL_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define EXCLUDES(...) VEXIL_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
#define ACQUIRE(...) VEXIL_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define RELEASE(...) VEXIL_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
