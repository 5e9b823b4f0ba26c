// How loops over bytes come to use the widest vectors of the machine that they run on.
#pragma once

// A function is built twice, and the loader chooses as the program starts. The sanitizers do not
// bear functions that are chosen so early; their builds, and machines of other kinds, have one of
// each.
#if defined(__x86_64__) && defined(ZRT_WIDE_VECTORS)
#define ZRT_WIDE [[gnu::target_clones("avx2", "default")]]
#else
#define ZRT_WIDE
#endif

// Set into such functions, to be compiled with them for the same machine.
#define ZRT_INLINE [[gnu::always_inline]] inline
