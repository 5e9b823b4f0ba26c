// The edges of sizes and of numbers: results, literals and texts as long as a bit length or a
// position can tell, and those one longer; numbers at which 32 bits begin, end or wrap. What takes
// gigabytes is run where ZRT_HUGE is set.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <utility>

#include "bits/bit_value.h"
#include "environment.h"
#include "scan/operators.h"
#include "support.h"

namespace {

constexpr int kMax = std::numeric_limits<int>::max();

// Streams tell more bits than they hold, so that both sides of the edge are in reach.
TEST(Edges, ResultsThatAreTooLongCostNothing) {
  struct Row {
    const char* left;
    unsigned short code;
    const char* right;
  };
  const std::string bytes = Repeated("5A", 100);
  const std::string longest = bytes + "/2147483647", half = bytes + "/1073741824";
  for (const Row& row : {
           Row{longest.c_str(),  zrt::OpConcat,    "01/1"         },
           Row{"01/1",           zrt::OpConcat,    longest.c_str()},
           Row{half.c_str(),     zrt::OpConcat,    half.c_str()   },
           Row{"5A/-2147483648", zrt::OpConcat,    "/-1"          },
           Row{half.c_str(),     zrt::OpReplicate, "00000002/32"  },
           Row{longest.c_str(),  zrt::OpReplicate, "7FFFFFFF/32"  },
           Row{"5A/-1073741825", zrt::OpReplicate, "00000002/32"  }
  }) {
    ZRTExpression expression;
    RowDataStream left, right;
    Fill(left, FromText(row.left));
    Fill(right, FromText(row.right));
    const long before = memory.allocation_count;
    EXPECT_EQ(expression.ExecuteBitStreamOperator(&left, row.code, &right), ErrStreamWrite);
    EXPECT_EQ(memory.allocation_count, before) << row.left << " " << row.right;
    EXPECT_EQ(Show(left), row.left);
    EXPECT_EQ(Show(right), row.right);
  }
}

// Whatever room the value had before: what is rebuilt stands at the buffer's front.
TEST(Edges, ARebuiltValueFillsItsBuffer) {
  zrt::BitValue value;
  (void)value.RebuildWithRoom(100, zrt::BitValue::Growth::kInFront);
  (void)value.Rebuild(300);
  EXPECT_FALSE(value.HasRoomFor(0, 301));
}

// Beyond what a double holds it is told from the digits alone which way a literal left it.
TEST(Edges, FloatLiteralsBeyondADouble) {
  struct Row {
    const char* begin;
    std::size_t zeros;
    const char* end;
    float value;
  };
  for (const Row& row : {
           Row{"1",      400, "",       INFINITY},
           Row{"1",      700, "e-298",  INFINITY},
           Row{"1",      700, "e-690",  1e10F   },
           Row{"1",      700, "e-1100", 0       },
           Row{"",       700, "1e-400", 0       },
           Row{"0.",     400, "1",      0       },
           Row{"1e-999", 400, "",       0       },
  }) {
    const std::string text = row.begin + std::string(row.zeros, '0') + row.end;
    float result = 77;
    EXPECT_EQ(ZRTExpression().GetFloatOperand(text.c_str(), &result), 0);
    EXPECT_EQ(result, row.value) << text;
  }
}

// A number that moves up, grows and is cut off by turns, from any place in any buffer.
TEST(Edges, NumbersThatAreReshaped) {
  std::mt19937 random(3);
  zrt::BitValue value;
  Bytes lender, model;
  for (int step = 0; step < 20000 && !HasFailure(); ++step) {
    if (step % 9 == 0) {
      model.resize(random() % (step % 2 == 0 ? 12 : 60));
      for (std::uint8_t& byte : model) byte = static_cast<std::uint8_t>(random());
      lender = model;
      value = step % 4 == 0 ? zrt::BitValue() : std::move(value);
      if (step % 5 == 0) value.Borrow(lender);
      if (step % 5 != 0) std::ranges::copy(model, value.Rebuild(model.size()).begin());
    }
    const std::size_t up_bits = random() % (step % 3 == 0 ? 90 : 11);
    Bytes moved(model.size() + random() % 3 + (random() % 5 == 0 ? 0 : up_bits / 8));
    const bool has_room = value.HasRoomFor(up_bits, moved.size());
    for (std::size_t bit = 0; bit < 8 * std::min(model.size(), moved.size()); ++bit) {
      const std::size_t to = bit + up_bits;
      if (to >= 8 * moved.size()) break;
      const unsigned is_set = unsigned{model[model.size() - 1 - bit / 8]} >> bit % 8 & 1U;
      moved[moved.size() - 1 - to / 8] |= static_cast<std::uint8_t>(is_set << to % 8);
    }
    const long before = memory.allocation_count;
    value.Reshape(up_bits, moved.size());
    EXPECT_TRUE(!has_room || memory.allocation_count == before);
    model = moved;
    Bytes seen(model.size());
    value.CopyTo(0, seen);
    EXPECT_EQ(seen, model) << step << " up " << up_bits;
    if (step % 7 != 0) continue;
    EXPECT_TRUE(std::ranges::equal(value.Bytes(), model)) << step;
  }
}

// The longest texts in little memory: one piece of zeros, mapped again and again.
class LongText {
 public:
  explicit LongText(std::size_t length) : size_(length / kPiece * kPiece + kPiece) {
    const int file = memfd_create("text", 0);
    const std::string piece(kPiece, '0');
    if (file < 0 || write(file, piece.data(), kPiece) != ssize_t{kPiece}) throw std::bad_alloc();
    text_ = Map(nullptr, size_, MAP_ANONYMOUS | MAP_NORESERVE, -1);
    for (std::size_t at = 0; at < size_; at += kPiece) Map(text_ + at, kPiece, MAP_FIXED, file);
    close(file);
    text_[length] = '\0';
  }
  LongText(const LongText&) = delete;
  LongText& operator=(const LongText&) = delete;
  ~LongText() { munmap(text_, size_); }

  [[nodiscard]] char* text() { return text_; }

 private:
  static constexpr std::size_t kPiece = std::size_t{1} << 21;

  static char* Map(char* at, std::size_t size, int flags, int file) {
    void* const place = mmap(at, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | flags, file, 0);
    if (place == MAP_FAILED) throw std::bad_alloc();
    return static_cast<char*>(place);
  }

  std::size_t size_;
  char* text_;
};

// A text as long as a position can tell is read, a longer one not at all. Told are the statuses,
// where the scans find an operator, and what is left in the results.
std::string OutcomesOfText(std::size_t length) {
  LongText given(length);
  char* const text = given.text();
  text[0] = text[length - 1] = '+';
  ZRTExpression expression;
  int integer = 77;
  float real = 77;
  RowDataStream stream, chain;
  Fill(stream, FromText("5A/3"));
  Fill(chain, FromText("5A/3"));
  unsigned short code = 77;
  char hex_text[] = "hex";
  std::ostringstream told;
  told << expression.GetIntegerOperand(text, &integer) << ' '
       << expression.GetFloatOperand(text, &real) << ' ' << expression.GetBitStream(text, &stream)
       << ' ' << expression.GetBitStream(text, hex_text) << ' '
       << expression.SolveBitStreamExpression(text, &chain) << ' '
       << expression.GetLeftMostOperator(text, &code) << ' '
       << expression.GetRightMostOperator(text, &code) << ' ' << code << ' ' << integer << ' '
       << real << ' ' << hex_text << ' ' << Show(stream) << ' ' << Show(chain);
  return told.str();
}

TEST(Edges, TextsThatAreTooLongAreNotRead) {
  if (ZRT_IS_SANITIZED) GTEST_SKIP() << "the sanitizers keep books on each byte that is read";
  EXPECT_EQ(OutcomesOfText(std::size_t{kMax} + 1),
            "-518 -518 -518 -518 -518 -1 -1 77 77 77 hex 5A/3 5A/3");
}

// Bytes and bit length of a value of ones, which is what most of these are: "268435456/2147483647".
std::string Ones(RowDataStream& stream) {
  const unsigned int size = stream.GetTotalSize();
  const unsigned char* const data = stream.GetDataBlock();
  const auto spare_bits = static_cast<int>(8 * std::size_t{size}) - stream.BitLength;
  const bool are_ones = size > 0 && spare_bits < 8 && data[0] == 0xFF >> spare_bits &&
                        std::all_of(data + 1, data + size, [](auto byte) { return byte == 0xFF; });
  return are_ones ? std::to_string(size) + "/" + std::to_string(stream.BitLength) : Show(stream);
}

struct Huge : testing::Test {
  void SetUp() override {
    if (!IsHuge()) GTEST_SKIP() << "takes gigabytes: set ZRT_HUGE to run it";
  }

  void Expect(const std::string& text, int status, const std::string& ones) {
    RowDataStream stream;
    EXPECT_EQ(world.expression.GetBitStream(text.c_str(), &stream), status) << text.substr(0, 99);
    EXPECT_EQ(Ones(stream), ones) << text.substr(0, 99);
  }

  World world;
};

TEST_F(Huge, Results) {
  const std::string longest = "268435456/2147483647";
  Expect("#1^2147483647", 0, longest);
  Expect("(#1^0x3FFFFFFF)@#1@(#1^0x3FFFFFFF)", 0, longest);
  Expect("#1^2147483647@#1", ErrStreamWrite, longest);
  Expect("#1^2147483647^2", ErrStreamWrite, longest);
  Expect("(#1^2147483647)@#1", ErrStreamWrite, longest);
  Expect("#1@(#1^2147483647)", ErrStreamWrite, "1/1");
  Expect("#1@((#1^2147483647)@#1)@#1", ErrStreamWrite, "/0");
  Expect("(#1^2147483647)@(#1^2147483647)", ErrStreamWrite, longest);
}

TEST_F(Huge, Literals) {
  const std::size_t most_digits = 2 * (std::size_t{kMax} / 8);  // of whole bytes
  Expect("0x" + std::string(most_digits, 'f'), 0, "268435455/2147483640");
  Expect("0x" + std::string(most_digits + 1, 'f'), ErrStreamWrite, "/0");
  Expect("#" + std::string(std::size_t{kMax} - 1, '1'), 0, "268435456/2147483646");
}

TEST_F(Huge, Texts) {
  EXPECT_EQ(OutcomesOfText(kMax), "-511 -511 -511 -511 -511 0 2147483646 7 77 77 hex /0 /0");
}

}  // namespace
