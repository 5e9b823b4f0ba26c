// The limit of short texts: the least that an evaluator can do. It knows every name beforehand as
// one letter, trusts each text to be right, and goes on from left to right behind a group too,
// where the language takes the rest as an expression of its own.
#pragma once

namespace zrt_bench {

/// The value of `text`, whose literals are read by strtol or strtof.
int WalkIntegers(const char* text);
float WalkFloats(const char* text);

}  // namespace zrt_bench
