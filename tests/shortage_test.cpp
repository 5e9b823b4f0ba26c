// Evaluations and operators that run out: of memory, or of what streams take.
#include "shortage.h"

#include <random>

#include "scan/operators.h"
#include "text_generator.h"
#include "twins.h"

namespace {

bool StartsWith(const Bytes& bytes, const Bytes& start) {
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

// Without memory all but a stream is as it was. A stream that refuses to store lacks bytes at its
// end.
bool IsFailure(Outcome seen, const Outcome& usual, bool /*for_good*/) {
  if (seen.status != ErrStreamWrite) return false;
  if (kIsMemoryShort) {
    return seen.integer == 77 && seen.real == 77.0F && seen.hex_text == "??" &&
           seen.text == usual.text;
  }
  if (!StartsWith(usual.stream.bytes, seen.stream.bytes)) return false;
  seen.stream.bytes = usual.stream.bytes;
  seen.status = usual.status;
  return seen == usual;
}

void RunOutInEvaluations(Evaluator& evaluator, const std::string& text, const Stream& before) {
  for (int kind = kInteger; kind < kKinds; ++kind) {
    const auto attempt = [&](const Caller& run) {
      evaluator.ResetRows();
      Outcome outcome = evaluator.Evaluate(static_cast<Kind>(kind), text, before, 20000, run);
      EXPECT_EQ(Evaluate(evaluator.expression, "(B[2]@t[1])^2"), "22000000142200000014/80");
      return outcome;
    };
    RunOut(kNames[kind] + (" " + text), attempt, IsFailure);
  }
}

TEST(Shortage, InEvaluations) {
  Evaluator evaluator;
  const std::string name(300, 'n');
  const Stream older = FromText("5A01/9");
  for (const std::string& text : {
           name + Repeated("+1", 200),
           Repeated("(1+", 100) + name + Repeated(")", 100),
           Repeated("~1+", 100) + name + "[",
           "((Long^3)<<5)@(~Long|(Long^2))$Long@Long" + Repeated("@#1", 60),
           Repeated("(Long)@", 60) + "#1" + Repeated("@Long", 30),
           "0x" + Repeated("12", 300) + "&(ID_MASK[1]@Long)",
           "t[" + Repeated("(1+", 100) + name + Repeated(")", 100) + "-101]",
           Repeated("(0x12^90)@", 8) + "0x" + Repeated("12", 300) + "@0x8c",
           Repeated("~Long@~1@", 100) + "#1",
           "(Long)@(" + Repeated("0x12@", 20) + "0x34^2)",
           name + "x",
       }) {
    RunOutInEvaluations(evaluator, text, {});
  }
  std::mt19937_64 random(1);
  TextGenerator generator([&random] { return random(); });
  for (int i = 0; i < 300; ++i) {
    const BlockSize setting(4 + i % 9);
    RunOutInEvaluations(evaluator, generator.BoundedText(), i % 2 == 0 ? older : Stream());
  }
}

// The left stream is as it was. Where nothing more is to be had it may lack bytes at its end, if it
// has fixed blocks; one that refuses to store does so only where the result does not fit into it.
TEST(Shortage, InOperators) {
  const Stream values[] = {
      FromText("/0"),          FromText("85/3"),       FromText("FF03/12"),
      FromText("00000003/32"), {Bytes(40, 0x5A), 320},
       {Bytes(40, 0x5A), 317}
  };
  ZRTExpression expression;
  for (unsigned row = 0; row < 16 * 36; ++row) {
    const int block_size = static_cast<int>(row) % 5 * 4;
    const BlockSize setting(block_size);
    const auto code = static_cast<unsigned short>(row / 36);
    const Stream &right = values[row / 6 % 6], &left = values[row % 6];
    const auto attempt = [&](const Caller& run) {
      RowDataStream stream, operand;
      Fill(stream, left);
      Fill(operand, right);
      const int status =
          run([&] { return expression.ExecuteBitStreamOperator(&stream, code, &operand); });
      EXPECT_EQ(Show(operand), Show(right));
      return Outcome{
          .status = status, .stream = {BytesOf(stream), stream.BitLength}
      };
    };
    const auto is_failure = [&](const Outcome& seen, const Outcome& /*usual*/, bool for_good) {
      if (seen.status != ErrStreamWrite) return false;
      if (!for_good || (kIsMemoryShort && block_size == 0)) return seen.stream == left;
      return StartsWith(left.bytes, seen.stream.bytes) &&
             seen.stream.bit_length == left.bit_length &&
             (kIsMemoryShort || code == zrt::OpConcat || code == zrt::OpReplicate);
    };
    RunOut(std::to_string(code) + " on " + Show(left) + " by " + Show(right), attempt, is_failure);
  }
}

}  // namespace
