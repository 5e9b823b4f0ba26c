// The aims: how many times the time of a peer, and of a limit, this library's time may be at most.
// The one place that tells them. A name before a slash stands for all rows that begin so and have
// none of their own.
#pragma once

#include <string_view>

namespace zrt_bench {

/// At most `ratio` times what `rival` takes. No rival: no such aim.
struct Aim {
  std::string_view rival;
  double ratio = 0;
};

struct RowAims {
  std::string_view row;
  Aim peers[2];
  Aim limit;
};

// clang-format off
inline constexpr RowAims kAims[] = {
    // Row          ahead of peers                                     close to the limit
    {"S1",          {{"fparser", 0.40}, {}},                           {"strtol walk", 3.5}},
    {"S2",          {{"fparser", 0.50}, {}},                           {"strtol walk", 10}},
    {"S3",          {{"fparser", 0.45}, {}},                           {"strtol walk", 4}},
    {"S4",          {{"fparser", 0.45}, {}},                           {"strtol walk", 7}},
    {"S5",          {{"fparser", 0.60}, {}},                           {"strtol walk", 6}},
    {"S6",          {{"fparser", 0.60}, {}},                           {"chain of 20", 11}},
    {"S7",          {{"Lua", 0.10}, {"muParserInt", 0.017}},           {"strtol walk", 5.5}},
    {"S8",          {{"Lua", 0.08}, {}},                               {"strtol walk", 8}},
    {"S9",          {{"fparser", 0.35}, {}},                           {"strtol walk", 5}},
    {"S10",         {{"fparser", 0.55}, {}},                           {"strtol walk", 7}},
    {"S11",         {{"fparser", 0.60}, {}},                           {"strtof walk", 2}},
    {"S12",         {},                                                {"allocations", 0}},
    {"B1/1Mbit",    {{"GMP mpn", 0.8}, {"Boost", 0.9}},                {"memcpy", 1.4}},
    {"B1/64Mbit",   {{"GMP mpn", 0.8}, {"Boost", 0.9}},                {"memcpy", 1.3}},
    {"B2/1Mbit",    {{"GMP mpn", 0.8}, {"LLVM APInt", 0.8}},           {"memcpy", 2.0}},
    {"B2/64Mbit",   {{"GMP mpn", 0.8}, {"LLVM APInt", 0.8}},           {"memcpy", 2.8}},
    {"B3",          {{"GMP mpn", 0.8}, {"LLVM APInt", 0.8}},           {"memcpy", 1.6}},
    {"B4",          {{"libbitarray", 0.08}, {}},                       {"memcpy", 3}},
    {"B5",          {{"GMP mpz", 0.5}, {"Boost", 0.5}},                {"memcpy", 1.4}},
    {"B6/1Mbit",    {{"GMP mpz", 0.7}, {"Boost", 0.7}},                {"memcpy", 2.2}},
    {"B6/64Mbit",   {{"GMP mpz", 0.7}, {"Boost", 0.7}},                {"memcpy", 1.7}},
    {"B7",          {{"GMP mpz", 0.15}, {"LLVM APInt", 0.02}},         {"memcpy", 1.4}},
    {"B8",          {{"GMP mpz", 0.15}, {"LLVM APInt", 0.02}},         {"memset", 1.5}},
    {"B9",          {{"GMP mpz", 1.0}, {}},                            {}},
    {"B10",         {{"GMP mpz", 0.15}, {}},                           {"codec, shift", 0.6}},
    {"B11",         {{"GMP mpz", 0.15}, {}},                           {"modp_b16", 0.6}},
    {"H1/1KiB",     {{"modp_b16", 0.25}, {}},                          {"memcpy", 5}},
    {"H1/1MiB",     {{"modp_b16", 0.25}, {}},                          {"memcpy", 5}},
    {"H1/64MiB",    {{"modp_b16", 0.4}, {}},                           {"memcpy", 2}},
    {"H2/1KiB",     {{"modp_b16", 0.5}, {}},                           {"memcpy", 12}},
    {"H2/1MiB",     {{"modp_b16", 0.5}, {}},                           {"memcpy", 12}},
    {"H2/64MiB",    {{"modp_b16", 0.5}, {}},                           {"memcpy", 3}},
    {"H4/random",   {{"modp_b16", 0.65}, {}},                          {"memcpy", 3}},
    {"H4/10%",      {{"modp_b16", 0.9}, {}},                           {"memcpy", 4}},
    {"H4/50%",      {{"modp_b16", 2.2}, {}},                           {"memcpy", 10}},
    {"H4/equal",    {{"modp_b16", 0.15}, {}},                          {"memcpy", 0.6}},
    {"H5/random",   {{"modp_b16", 0.55}, {}},                          {"memcpy", 3}},
    {"H5/10%",      {{"modp_b16", 0.85}, {}},                          {"memcpy", 5}},
    {"H5/50%",      {{"modp_b16", 1.8}, {}},                           {"memcpy", 10}},
    {"H5/equal",    {{"modp_b16", 0.1}, {}},                           {"memcpy", 0.6}},
    {"G1/100",      {{"modp_b16", 0.7}, {}},                           {}},
    {"G1/10000",    {{"modp_b16", 1.0}, {}},                           {}},
    {"G1/70000",    {{"modp_b16", 2.0}, {}},                           {"100 groups", 4}},
    {"G2",          {},                                                {"exponent", 1.1}},
    {"G3",          {},                                                {"8 x text, 3 x result", 1}},
    {"D/append",    {{"std::vector", 1.1}, {}},                        {}},
    {"D/in order",  {},                                                {"one block", 2}},
    {"D/at random", {},                                                {"one block", 2}},
    {"L",           {},                                                {"5 million lines/s", 1}},
};
// clang-format on

/// The aims of a row; none if the table does not tell of it.
constexpr RowAims AimsOf(std::string_view row) {
  for (const std::string_view name : {row, row.substr(0, row.find('/'))}) {
    for (const RowAims& aims : kAims) {
      if (aims.row == name) return aims;
    }
  }
  return {};
}

}  // namespace zrt_bench
