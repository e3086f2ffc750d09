#pragma once

// Portable names for the compiler extensions of the engine's hot paths, so that the engine builds
// on any processor and with any C++20 compiler. KUVO_PORTABLE (set by the sanitizer, fuzz and
// thread-sanitizer builds, whose runtimes cannot resolve multiversioned functions) asks for the
// plain path.

#if defined(__has_attribute)
#if __has_attribute(target_clones) && defined(__x86_64__) && defined(__ELF__) && !defined(KUVO_PORTABLE)
#define J_HAS_MULTIVERSION 1
#endif
#endif

#if defined(__has_builtin)
#if __has_builtin(__builtin_prefetch)
#define J_HAS_PREFETCH 1
#endif
#endif

// Before a function: also compiles it for x86-64-v3, the version picked at load time; else nothing.
#if defined(J_HAS_MULTIVERSION)
#define J_MULTIVERSION __attribute__((target_clones("arch=x86-64-v3", "default")))
#else
#define J_MULTIVERSION
#endif

// Hints that the memory at p is read soon (p may be any address); nothing without a prefetch builtin.
#if defined(J_HAS_PREFETCH)
#define J_PREFETCH(p) __builtin_prefetch(p)
#else
#define J_PREFETCH(p) static_cast<void>(sizeof(p))
#endif
