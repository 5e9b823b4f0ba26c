// Run-length text of 64 MiB of bytes, written and read back. The argument is how long runs are at
// most: the shorter, the more pieces the text has.
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "DataExpression.h"
#include "ZRTExpression.h"

namespace {

constexpr unsigned kByteCount = 64 * 1024 * 1024;

void Fill(LByteBuffer& data, unsigned max_run) {
  std::minstd_rand random(1);
  for (unsigned left = kByteCount; left > 0;) {
    const auto byte = static_cast<unsigned char>(random() >> 8);
    for (auto run = static_cast<unsigned>(1 + random() % max_run); run > 0 && left > 0; --run) {
      data.WriteData(byte);
      --left;
    }
  }
}

void WriteText(benchmark::State& state) {
  LByteBuffer data;
  Fill(data, static_cast<unsigned>(state.range(0)));
  std::string text(2 * std::size_t{kByteCount} + 3, ' ');
  while (state.KeepRunning()) {
    fnGetDataExpression(&data, text.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * kByteCount);
}

void ReadText(benchmark::State& state) {
  std::string text(2 * std::size_t{kByteCount} + 3, ' ');
  {
    LByteBuffer data;
    Fill(data, static_cast<unsigned>(state.range(0)));
    fnGetDataExpression(&data, text.data());
  }
  ZRTExpression expression;
  while (state.KeepRunning()) {
    RowDataStream stream;
    if (expression.GetBitStream(text.c_str(), &stream) != 0) state.SkipWithError("refused");
  }
  state.SetBytesProcessed(state.iterations() * kByteCount);
}

BENCHMARK(WriteText)->Arg(8)->Arg(40)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadText)->Arg(8)->Arg(40)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
