// What evaluation costs and survives: texts of any depth and length, work in proportion to length,
// no allocation for short texts, and memory that runs out at any allocation. No test asserts a
// time.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "support.h"

namespace {

constexpr long kUnlimited = std::numeric_limits<long>::max();

// Each allocation of the program comes by here; each thread counts its own.
// NOLINTBEGIN(misc-new-delete-overloads,*-named-parameter,*-no-malloc,*-non-const-global-variables)
thread_local long allocation_count = 0, allocated_bytes = 0;
thread_local long allocations_left = kUnlimited;

void* Allocate(std::size_t size) noexcept {
  ++allocation_count;
  allocated_bytes += static_cast<long>(size);
  if (allocations_left <= 0) return nullptr;
  if (allocations_left != kUnlimited) --allocations_left;
  return std::malloc(size > 0 ? size : 1);
}

}  // namespace

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
// NOLINTEND(misc-new-delete-overloads,*-named-parameter,*-no-malloc,*-non-const-global-variables)

namespace {

std::string Repeated(const std::string& piece, std::size_t count) {
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

// Texts of `count` pieces: some before, one in the middle, some behind ("." for none).
constexpr const char* kShapes = R"(
  ~a[ 1 ]   ~1+ 1 .     (1)+ 1 .    1+( 1 )     ( 1 )+1     ( 1 )      1+ 1 .    ( 1 .   ~ 1 ]
  a[ 1 ]    ~b[+]c[ 1 ]e-           #101@ #101 .          (#101)@ #101 .        ~#101@ #101 .
  #101@( #101 )         ( #101 )@#101         #101@#11&0x1F@ #101 .             #101@#1<<0@ #101 .)";

// Memory stands for work here: it counts exactly. Each piece kept again at every level would show.
TEST(Growth, PiecesAndLevelsCostInProportion) {
  ZRTExpression expression;
  std::istringstream shapes(kShapes);
  std::size_t most = 2000000;  // the first shapes would take hours if each level scanned the rest
  for (std::string before, middle, behind; shapes >> before >> middle >> behind;) {
    most = most / 2 + 15000;
    if (behind == ".") behind.clear();
    std::vector<int> statuses;
    std::vector<long> bytes;
    for (const std::size_t count : {std::size_t{9}, most / 2, most}) {
      const std::string text = Repeated(before, count) + middle + Repeated(behind, count);
      const long bytes_before = allocated_bytes;
      RowDataStream stream;
      const Evaluations evaluations(expression, text, stream);
      bytes.push_back(allocated_bytes - bytes_before);
      statuses.insert(statuses.end(), evaluations.statuses, std::end(evaluations.statuses));
    }
    EXPECT_LT(bytes[2], 3 * bytes[1] + 1000) << before << middle << behind;
    for (std::size_t i = 3; i < statuses.size(); ++i) EXPECT_EQ(statuses[i], statuses[i % 3]);
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
  const auto is_short_or_same = [](int a, int b) { return a == ErrStreamWrite || a == b; };
  for (const std::string& text : texts) {
    bool is_short_of_memory = true;
    for (long left = 0; is_short_of_memory; ++left) {
      RowDataStream stream, short_stream;
      const Evaluations plain(world.expression, text, stream);
      allocations_left = left;
      const Evaluations evaluations(world.expression, text, short_stream);
      is_short_of_memory = allocations_left == 0;
      allocations_left = kUnlimited;
      EXPECT_TRUE(std::ranges::equal(evaluations.statuses, plain.statuses, is_short_or_same))
          << text << left;
      EXPECT_TRUE(evaluations.statuses[0] == 0 || evaluations.integer == 77) << text << left;
      EXPECT_TRUE(evaluations.statuses[2] != 0 || Hex(short_stream) == Hex(stream)) << text << left;
    }
  }
}

}  // namespace
