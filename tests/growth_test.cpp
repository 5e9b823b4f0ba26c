// What evaluation costs and survives: texts of any depth and length on hardly any stack, work in
// proportion to length, no allocation for short texts. No test asserts a time.
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <climits>
#include <functional>

#include "environment.h"
#include "support.h"

namespace {

// Runs `work` on as little stack as a thread may have.
void OnSmallStack(std::function<void()> work) {
  constexpr std::size_t kStackSize{ZRT_IS_SANITIZED ? 1 << 20 : 1 << 16};  // bytes
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes,
                            std::max(static_cast<std::size_t>(PTHREAD_STACK_MIN), kStackSize));
  const auto run = [](void* given) -> void* {
    (*static_cast<std::function<void()>*>(given))();
    return nullptr;
  };
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

// The statuses of a text as each kind of value.
std::array<int, 3> StatusesOf(ZRTExpression& expression, const std::string& text,
                              RowDataStream& stream) {
  int integer = 77;
  float number = 77;
  return {expression.GetIntegerOperand(text.c_str(), &integer),
          expression.GetFloatOperand(text.c_str(), &number),
          expression.GetBitStream(text.c_str(), &stream)};
}

// Texts of `count` pieces: some before, one in the middle, some behind ("." for none).
constexpr const char* kShapes = R"(
  ~a[ 1 ]   ~1+ 1 .     (1)+ 1 .    1+( 1 )     ( 1 )+1     ( 1 )      1+ 1 .    ( 1 .   ~ 1 ]
  a[ 1 ]    ~b[+]c[ 1 ]e-           #101@ #101 .          (#101)@ #101 .        ~#101@ #101 .
  #101@( #101 )         ( #101 )@#101         #101@#11&0x1F@ #101 .             #101@#1<<0@ #101 .
  (0x5A^2)@0x1@ 0x5A .  0x5A@( 0x5A )         (0x5A)@(0x5A&0x5A)@ 0x5A .        0x5A@(0x5A )@ 0x5A .)";

// Memory stands for work here: it counts exactly. Each piece kept again at every level would show,
// and the stack would overflow if a level took but a byte of it.
TEST(Growth, PiecesAndLevelsCostInProportion) {
  std::istringstream shapes(kShapes);
  std::size_t most = 2000000;  // the first shapes would take hours if each level scanned the rest
  for (std::string before, middle, behind; shapes >> before >> middle >> behind;) {
    most = ZRT_IS_DEBUG ? most / 2 + 15000 : 1000000;
    if (behind == ".") behind.clear();
    if (IsHuge()) most = (64 << 20) / (before.size() + behind.size());  // texts of 64 MiB
    OnSmallStack([&] {
      ZRTExpression expression;
      std::vector<std::array<int, 3>> statuses;
      std::vector<long> bytes;
      for (const std::size_t count : {std::size_t{9}, most / 2, most}) {
        const std::string text = Repeated(before, count) + middle + Repeated(behind, count);
        const long bytes_before = memory.allocated_bytes;
        RowDataStream stream;
        statuses.push_back(StatusesOf(expression, text, stream));
        bytes.push_back(memory.allocated_bytes - bytes_before);
      }
      EXPECT_LT(bytes[2], 3 * bytes[1] + 1000) << before << middle << behind;
      EXPECT_TRUE(statuses[0] == statuses[1] && statuses[0] == statuses[2]) << before;
    });
  }
}

TEST(Growth, ChainsOfAMillionBlocksNeedNoStack) {
  OnSmallStack([] {
    const int count = ZRT_IS_DEBUG ? 100000 : 1000000;
    const std::string text = "0x12345678^" + std::to_string(count);
    const BlockSize setting(4);
    ZRTExpression expression;
    RowDataStream stream, shared;
    EXPECT_EQ(expression.GetBitStream(text.c_str(), &stream), 0);
    RowDataStream copy(stream);
    copy.CopyBlock(&stream);
    shared = copy;
    EXPECT_EQ(shared.GetTotalSize(), 2 * stream.GetTotalSize());
    std::string mask = "ID_MASK";
    for (int i = 0; i < count; ++i) expression.SearchDataField(mask.data());
  });
}

TEST(Growth, ShortTextsAllocateNothing) {
  World world;
  const std::string name(60, 'n');
  AddToken(world.local_tokens, name, 2, {3});
  AddRows(world.local_data, "row", {FromText("0123456789ABCDEF0123456789ABCDEF/128")});
  RowDataStream stream;
  for (int i = 0; i < 32; ++i) stream.WriteData(0);  // the room that appending needs
  const std::string texts[] = {
      name + Repeated("+1", 40) + "-" + name,
      "(" + Repeated("1-(", 10) + name + Repeated(")", 10) + ")*" + Repeated("(3)-", 10) + name,
      Repeated("~1+", 40) + name,
      Repeated("(~#101)@", 10) + Repeated("#1@", 20) + "0x1234",
      "~row&(row|~(row<<3))>>(1)$(row@#0)&ID_MASK,(" + name + "^1)",
  };
  for (const std::string& text : texts) {
    stream.ClearBuffer();
    const long before = memory.allocation_count;
    const std::array<int, 3> statuses = StatusesOf(world.expression, text, stream);
    EXPECT_EQ(memory.allocation_count, before) << text;
    EXPECT_EQ(statuses[2], 0) << text;
  }
}

}  // namespace
