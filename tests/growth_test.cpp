// What evaluation costs and survives: texts of any depth and length, work in proportion to length,
// no allocation for short texts, and memory that runs out at any allocation. No test asserts a
// time.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <string>

#include "support.h"

namespace {

constexpr long kUnlimited = std::numeric_limits<long>::max();

long allocation_count = 0, allocated_bytes = 0;
long allocations_left = kUnlimited;

void* Allocate(std::size_t size) noexcept {
  ++allocation_count;
  allocated_bytes += static_cast<long>(size);
  if (allocations_left <= 0) return nullptr;
  if (allocations_left != kUnlimited) --allocations_left;
  return std::malloc(size > 0 ? size : 1);
}

}  // namespace

// NOLINTBEGIN(misc-new-delete-overloads,cppcoreguidelines-no-malloc): counted for the whole
// program.
void* operator new(std::size_t size) {
  if (void* memory = Allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
// NOLINTEND(misc-new-delete-overloads,cppcoreguidelines-no-malloc)

namespace {

std::string Repeated(const char* piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

// Evaluates a text to each kind of value; the results of failures are left as they come.
struct Evaluations {
  int integer = 77;
  float number = 77;
  int statuses[3];

  Evaluations(ZRTExpression& expression, const std::string& text, RowDataStream& stream)
      : statuses{expression.GetIntegerOperand(text.c_str(), &integer),
                 expression.GetFloatOperand(text.c_str(), &number),
                 expression.GetBitStream(text.c_str(), &stream)} {}
};

// A text of `count` pieces: some before, one in the middle, some behind.
struct Shape {
  const char* before;
  const char* middle;
  const char* behind;
  int integer_status, bits_status;
};

constexpr Shape kShapes[] = {
    {"(",              "1",    ")",      0,                        0                       },
    {"(1)+",           "1",    "",       0,                        0                       },
    {"1+",             "1",    "",       0,                        0                       },
    {"~1+",            "1",    "",       0,                        0                       },
    {"1+(",            "1",    ")",      0,                        0                       },
    {"(",              "1",    ")+1",    0,                        0                       },
    {"(",              "1",    "",       ErrUnbalancedParenthesis, ErrUnbalancedParenthesis},
    {"~",              "1",    "]",      ErrStrayCloseBracket,     ErrStrayCloseBracket    },
    {"~a[",            "1",    "]",      ErrUnknownOperand,        ErrNegativeIndex        },
    {"~b[+]c[",        "1",    "]e-",    ErrNegativeIndex,         ErrNegativeIndex        },
    {"a[",             "1",    "]",      ErrNegativeIndex,         ErrNegativeIndex        },
    {"#101@",          "#101", "",       ErrInvalidOperator,       0                       },
    {"(#101)@",        "#101", "",       ErrInvalidOperator,       0                       },
    {"~#101@",         "#101", "",       ErrInvalidOperator,       0                       },
    {"#101@(",         "#101", ")",      ErrInvalidOperator,       0                       },
    {"(",              "#101", ")@#101", ErrInvalidOperator,       0                       },
    {"#101@#11&0x1F@", "#101", "",       ErrInvalidOperator,       0                       },
    {"#101@#1<<0@",    "#101", "",       ErrInvalidOperator,       0                       },
};

// Memory stands for work here: it counts exactly. Each piece kept again at every level would show.
TEST(Growth, PiecesAndLevelsCostInProportion) {
  ZRTExpression expression;
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(std::string(shape.before) + shape.middle + shape.behind);
    const std::size_t most = &shape == kShapes ? 1000000 : 100000;
    long bytes[2] = {};
    for (const std::size_t half : {0U, 1U}) {
      const std::size_t count = half == 0 ? most : most / 2;
      const std::string text =
          Repeated(shape.before, count) + shape.middle + Repeated(shape.behind, count);
      const long before = allocated_bytes;
      RowDataStream stream;
      const Evaluations evaluations(expression, text, stream);
      bytes[half] = allocated_bytes - before;
      EXPECT_EQ(evaluations.statuses[0], shape.integer_status);
      EXPECT_EQ(evaluations.statuses[2], shape.bits_status);
    }
    EXPECT_LT(bytes[0], 3 * bytes[1] + 1000);
  }
}

TEST(Growth, ShortTextsAllocateNothing) {
  World world;
  const std::string name(60, 'n');
  world.local_tokens.Add(ZRTTokens::IntScalar(name.c_str(), 3));
  AddRows(world.local_data, "row", {"0123456789ABCDEF0123456789ABCDEF/128"});
  const std::string texts[] = {
      name + Repeated("+1", 40) + "-" + name,
      "(" + Repeated("1-(", 10) + name + Repeated(")", 10) + ")*" + Repeated("(3)-", 10) + name,
      Repeated("~1+", 40) + name,
      Repeated("(~#101)@", 10) + Repeated("#1@", 20) + "0x1234",
      "~row&(row|~(row<<3))>>(1)$(row@#0)&ID_MASK,(" + name + "^1)",
  };
  RowDataStream stream;
  for (int i = 0; i < 32; ++i) stream.WriteData(0);  // the room that appending needs
  for (const std::string& text : texts) {
    stream.ClearBuffer();
    const long before = allocation_count;
    const Evaluations evaluations(world.expression, text, stream);
    EXPECT_EQ(allocation_count, before) << text;
    EXPECT_EQ(evaluations.statuses[2], 0) << text;
  }
}

// Memory runs out at the first allocation, at the second, and so on until there is enough.
TEST(Growth, ExhaustedMemoryIsAStatus) {
  World world;
  const std::string name(300, 'n');
  world.local_tokens.Add(ZRTTokens::IntScalar(name.c_str(), 3));
  AddRows(world.local_data, "row", {"0123456789ABCDEF0123456789ABCDEF/128"});
  const std::string texts[] = {
      name + Repeated("+1", 200),
      Repeated("(1+", 100) + name + Repeated(")", 100),
      Repeated("~1+", 100) + name,
      "((row^3)<<5)@(~row|(row^2))$row@row",
      Repeated("(row)@", 30) + "#1" + Repeated("@row", 30),
      "0x" + Repeated("12", 300) + "&(ID_MASK[1]@row)",
  };
  for (const std::string& text : texts) {
    bool is_short_of_memory = true;
    for (long left = 0; is_short_of_memory; ++left) {
      RowDataStream stream;
      const Evaluations plain(world.expression, text, stream);
      RowDataStream short_stream;
      allocations_left = left;
      const Evaluations evaluations(world.expression, text, short_stream);
      is_short_of_memory = allocations_left == 0;
      allocations_left = kUnlimited;
      for (int kind = 0; kind < 3; ++kind) {
        const int status = evaluations.statuses[kind];
        EXPECT_TRUE(status == ErrStreamWrite || status == plain.statuses[kind]) << text << left;
      }
      EXPECT_TRUE(evaluations.statuses[0] == 0 || evaluations.integer == 77) << text << left;
      if (evaluations.statuses[2] == 0) {
        EXPECT_EQ(Hex(short_stream), Hex(stream)) << text << left;
      }
    }
  }
}

}  // namespace
