// How loops over bytes come to use the widest vectors of the machine that they run on.
#pragma once

// ZRT_WIDE: a function is built twice, and the loader chooses as the program starts. The sanitizers
// do not bear functions that are chosen so early; their builds, and machines of other kinds, have
// one of each. ZRT_FOR_WIDE: one of its own for wide vectors, whose caller asks for them.
#if defined(__x86_64__) && defined(ZRT_WIDE_VECTORS)
#define ZRT_WIDE     [[gnu::target_clones("avx2", "default")]]
#define ZRT_FOR_WIDE [[gnu::target("avx2")]]
inline bool HasWideVectors() { return __builtin_cpu_supports("avx2") != 0; }
#else
#define ZRT_WIDE
#define ZRT_FOR_WIDE
constexpr bool HasWideVectors() { return false; }
#endif

// Set into such functions, to be compiled with them for the same machine.
#define ZRT_INLINE [[gnu::always_inline]] inline
