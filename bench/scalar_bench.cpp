// Short expressions of each kind: nanoseconds from text to value.
#include <benchmark/benchmark.h>

#include "ZRTExpression.h"

namespace {

struct World {
  World() {
    tokens.Add(ZRTTokens::IntScalar("rows", 12));
    tokens.Add(ZRTTokens::IntArray("order", {3, 1, 4, 1, 5, 9, 2, 6}));
    tokens.Add(ZRTTokens::FloatScalar("voltage", 3.3F));
    data.AddField("usercode")->AddRow(32, {0x12, 0x34, 0x56, 0x78});
    expression.SetLocalTokenTree(&tokens);
    expression.SetLocalZRTData(&data);
  }

  ZRTTokenTree tokens;
  QLMPlusData data;
  ZRTExpression expression;
};

void Integer(benchmark::State& state, const char* text) {
  World world;
  int value = 0;
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(world.expression.GetIntegerOperand(text, &value));
  }
}
BENCHMARK_CAPTURE(Integer, literal, "7");
BENCHMARK_CAPTURE(Integer, chain, "2+3*4");
BENCHMARK_CAPTURE(Integer, token, "rows");
BENCHMARK_CAPTURE(Integer, group, "(rows+1)*24-1");
BENCHMARK_CAPTURE(Integer, unary, "1+~rows&255");
BENCHMARK_CAPTURE(Integer, index, "order[rows/2]");

void Float(benchmark::State& state, const char* text) {
  World world;
  float value = 0;
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(world.expression.GetFloatOperand(text, &value));
  }
}
BENCHMARK_CAPTURE(Float, chain, "2.5*3+1e-3");
BENCHMARK_CAPTURE(Float, group, "1000*(voltage+0.5)");

void BitsText(benchmark::State& state, const char* text) {
  World world;
  char hex_text[64];
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(world.expression.GetBitStream(text, hex_text));
  }
}
BENCHMARK_CAPTURE(BitsText, literal, "0x12345678");
BENCHMARK_CAPTURE(BitsText, chain, "#101@#1@0xFF&0x0F");
BENCHMARK_CAPTURE(BitsText, field, "usercode>>8&0xFF");
BENCHMARK_CAPTURE(BitsText, group, "(0xFF^4)@0x1234");
BENCHMARK_CAPTURE(BitsText, unary, "0xF0&~0x3C");

}  // namespace
