// Long bit vectors: texts of n joined pieces in each shape, whose time is to grow with n, and the
// operators on 64 Mi bits beside a plain copy of as many bytes.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "ZRTExpression.h"
#include "bitstream/bit_operators.h"

namespace {

using Text = std::string (*)(const std::string& piece, std::size_t count);

std::string Repeated(const std::string& part, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += part;
  return text;
}

std::string Flat(const std::string& piece, std::size_t count) {
  return Repeated(piece + "@", count - 1) + piece;
}
std::string Groups(const std::string& piece, std::size_t count) {
  return Flat("(" + piece + ")", count);
}
std::string Mixed(const std::string& piece, std::size_t count) {
  return Flat(piece + "@(" + piece + ")", count / 2);
}
std::string LeftNested(const std::string& piece, std::size_t count) {
  return Repeated("(", count) + piece + ")" + Repeated("@" + piece + ")", count - 1);
}
std::string RightNested(const std::string& piece, std::size_t count) {
  return Repeated(piece + "@(", count - 1) + piece + Repeated(")", count - 1);
}
std::string Unary(const std::string& piece, std::size_t count) { return Flat("~" + piece, count); }

void Join(benchmark::State& state, Text write, const char* piece) {
  const std::string text = write(piece, static_cast<std::size_t>(state.range(0)));
  ZRTExpression expression;
  while (state.KeepRunning()) {
    RowDataStream stream;
    if (expression.GetBitStream(text.c_str(), &stream) != 0) state.SkipWithError("refused");
  }
  state.SetComplexityN(state.range(0));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
#define ZRT_BENCH_JOIN(shape)                                                                      \
  BENCHMARK_CAPTURE(Join, shape##_of_bytes, shape, "0x5A")->Range(1 << 11, 1 << 20)->Complexity(); \
  BENCHMARK_CAPTURE(Join, shape##_of_3_bits, shape, "#101")->Range(1 << 11, 1 << 20)->Complexity()
ZRT_BENCH_JOIN(Flat);
ZRT_BENCH_JOIN(Groups);
ZRT_BENCH_JOIN(Mixed);
ZRT_BENCH_JOIN(LeftNested);
ZRT_BENCH_JOIN(RightNested);
ZRT_BENCH_JOIN(Unary);

constexpr std::size_t kByteCount = 64 * 1024 * 1024 / 8;

zrt::BitValue Word(int word) {
  zrt::BitValue value;
  const auto bytes = value.Rebuild(4);
  for (std::size_t i = 0; i < 4; ++i) bytes[i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
  value.set_bit_length(32);
  return value;
}

zrt::BitValue Vector(std::size_t byte_count) {
  zrt::BitValue value;
  std::memset(value.Rebuild(byte_count).data(), 0x5A, byte_count);
  value.set_bit_length(static_cast<int>(8 * byte_count));
  return value;
}

void Copy(benchmark::State& state) {
  const std::vector<std::uint8_t> from(kByteCount, 0x5A);
  std::vector<std::uint8_t> to(kByteCount);
  while (state.KeepRunning()) {
    std::memcpy(to.data(), from.data(), kByteCount);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kByteCount));
}
BENCHMARK(Copy);

// In place, over and over: what the bits are plays no part. A count of 0 is a vector on the right.
void Operator(benchmark::State& state, zrt::OperatorCode code, int count) {
  zrt::BitValue left = Vector(kByteCount);
  zrt::BitValue right = count == 0 ? Vector(kByteCount) : Word(count);
  while (state.KeepRunning()) {
    if (zrt::ApplyToBits(left, code, right) != zrt::kOk) state.SkipWithError("refused");
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kByteCount));
}
BENCHMARK_CAPTURE(Operator, and, zrt::OpAnd, 0);
BENCHMARK_CAPTURE(Operator, or, zrt::OpOr, 0);
BENCHMARK_CAPTURE(Operator, complement, zrt::OpBitwiseNot, 0);
BENCHMARK_CAPTURE(Operator, negate_each, zrt::OpLogicalNot, 0);
BENCHMARK_CAPTURE(Operator, shift_left_3, zrt::OpShiftLeft, 3);
BENCHMARK_CAPTURE(Operator, shift_right_3, zrt::OpShiftRight, 3);
BENCHMARK_CAPTURE(Operator, shift_left_64, zrt::OpShiftLeft, 64);
BENCHMARK_CAPTURE(Operator, reverse, zrt::OpBitReverse, 0);

void Replicate(benchmark::State& state) {
  const auto bit_count = static_cast<int>(state.range(0));
  zrt::BitValue count = Word(static_cast<int>(8 * kByteCount) / bit_count);
  while (state.KeepRunning()) {
    zrt::BitValue pattern = Word(5);
    pattern.Reshape(0, (static_cast<std::size_t>(bit_count) + 7) / 8);
    pattern.set_bit_length(bit_count);
    if (zrt::ApplyToBits(pattern, zrt::OpReplicate, count) != zrt::kOk)
      state.SkipWithError("refused");
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kByteCount));
}
BENCHMARK(Replicate)->Arg(1)->Arg(3)->Arg(8)->Arg(12)->Arg(32);

}  // namespace
