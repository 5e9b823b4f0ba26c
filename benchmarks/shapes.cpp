// The shapes, and their evaluation by public calls.
#include "shapes.h"

#include <cstring>
#include <memory>
#include <stdexcept>

#include "world.h"

namespace zrt_bench {

namespace {

constexpr const char* kNumbers = "Numbers";
constexpr const char* kFailures = "Texts that fail";
constexpr const char* kBytes = "Joined bytes";
constexpr const char* kBitPieces = "Joined 3-bit pieces";

struct ShapeWork : World {
  ShapeWork(const Shape& shape_of_text, std::size_t text_bytes)
      : shape(&shape_of_text), text(TextOf(shape_of_text, text_bytes)) {}

  void Evaluate() {
    if (shape->kind == Kind::kInteger) {
      status = expression.GetIntegerOperand(text.c_str(), &integer);
    } else if (shape->kind == Kind::kFloat) {
      status = expression.GetFloatOperand(text.c_str(), &number);
    } else {
      stream.ClearBuffer();
      stream.BitLength = 0;
      status = expression.GetBitStream(text.c_str(), &stream);
    }
  }

  long Value() const {
    if (shape->kind == Kind::kInteger) return integer;
    return shape->kind == Kind::kFloat ? static_cast<long>(number) : stream.BitLength;
  }

  const Shape* shape;
  std::string text;
  RowDataStream stream;
  int status = 0;
  int integer = 0;
  float number = 0;
};

std::size_t PieceCount(const Shape& shape, std::size_t text_bytes) {
  return text_bytes / (std::strlen(shape.before) + std::strlen(shape.behind));
}

long ExpectedValue(const Shape& shape, std::size_t text_bytes) {
  const auto count = static_cast<long>(PieceCount(shape, text_bytes));
  return shape.value_of_piece * count + shape.value_of_middle;
}

void Check(const ShapeWork& work, long expected) {
  const int status = work.shape->status;
  if (work.status == status && (status != 0 || work.Value() == expected)) return;
  throw std::runtime_error(std::string(work.shape->name) + " gives " + StatusText(work.status) +
                           ", value " + std::to_string(work.Value()) + " instead of " +
                           std::to_string(expected));
}

}  // namespace

// t[1] is 1.
const std::vector<Shape>& Shapes() {
  constexpr Kind kInt = Kind::kInteger, kFloat = Kind::kFloat, kBits = Kind::kBits;
  // The formatter would give each column the width of its longest entry.
  // clang-format off
  static const std::vector<Shape> shapes = {
      {kNumbers,   "chain 1+1",       kInt,   "1+",           "1",    "",       1,  1},
      {kNumbers,   "floats 1.0*1",    kFloat, "1.0*",         "1",    "",       0,  1},
      {kNumbers,   "groups (1)+1",    kInt,   "(1)+",         "1",    "",       1,  1},
      {kNumbers,   "both 1+(1)+1",    kInt,   "1+(1)+",       "1",    "",       2,  1},
      {kNumbers,   "left ((1)+1)+1",  kInt,   "(",            "1",    ")+1",    1,  1},
      {kNumbers,   "right 1+(1+(1))", kInt,   "1+(",          "1",    ")",      1,  1},
      {kNumbers,   "nested (((1)))",  kInt,   "(",            "1",    ")",      0,  1},
      {kNumbers,   "unary ~1+~1",     kInt,   "~1+",          "1",    "",      -2,  1},
      {kNumbers,   "indexes t[1]+1",  kInt,   "t[1]+",        "1",    "",       1,  1},
      {kFailures,  "unclosed (((1",   kInt,   "(",            "1",    "",       0,  0,
       ErrUnbalancedParenthesis},
      {kFailures,  "stray ~~1]]",     kInt,   "~",            "1",    "]",      0,  0,
       ErrStrayCloseBracket},
      {kFailures,  "nested t[t[1]]",  kInt,   "t[",           "1",    "]",      0,  0,
       ErrNegativeIndex},
      {kBytes,     "flat",            kBits,  "0x5A@",        "0x5A", "",       8,  8},
      {kBytes,     "groups",          kBits,  "(0x5A)@",      "0x5A", "",       8,  8},
      {kBytes,     "mixed",           kBits,  "0x5A@(0x5A)@", "0x5A", "",       16, 8},
      {kBytes,     "left",            kBits,  "(",            "0x5A", ")@0x5A", 8,  8},
      {kBytes,     "right",           kBits,  "0x5A@(",       "0x5A", ")",      8,  8},
      {kBytes,     "unary",           kBits,  "~0x5A@",       "0x5A", "",       8,  8},
      {kBitPieces, "flat, 3 bits",    kBits,  "#101@",        "#101", "",       3,  3},
      {kBitPieces, "groups, 3 bits",  kBits,  "(#101)@",      "#101", "",       3,  3},
      {kBitPieces, "mixed, 3 bits",   kBits,  "#101@(#101)@", "#101", "",       6,  3},
      {kBitPieces, "left, 3 bits",    kBits,  "(",            "#101", ")@#101", 3,  3},
      {kBitPieces, "right, 3 bits",   kBits,  "#101@(",       "#101", ")",      3,  3},
      {kBitPieces, "unary, 3 bits",   kBits,  "~#101@",       "#101", "",       3,  3},
  };
  // clang-format on
  return shapes;
}

std::string TextOf(const Shape& shape, std::size_t text_bytes) {
  const std::size_t count = PieceCount(shape, text_bytes);
  std::string text;
  text.reserve(text_bytes + std::strlen(shape.middle));
  for (std::size_t i = 0; i < count; ++i) text += shape.before;
  text += shape.middle;
  for (std::size_t i = 0; i < count; ++i) text += shape.behind;
  return text;
}

std::size_t ResultBytes(const Shape& shape, std::size_t text_bytes) {
  if (shape.kind != Kind::kBits) return 0;
  return static_cast<std::size_t>(ExpectedValue(shape, text_bytes) + 7) / 8;
}

Contestant ShapeContestant(const Shape& shape, std::size_t text_bytes) {
  auto work = std::make_shared<ShapeWork>(shape, text_bytes);
  const auto check = [work, expected = ExpectedValue(shape, text_bytes)] {
    Check(*work, expected);
    return std::string();
  };
  return MakeContestant(
      "this library", Role::kLibrary, [work] { work->Evaluate(); }, check);
}

std::vector<Contestant> ShapeContestants(const Shape& shape, std::size_t text_bytes) {
  const std::string text = TextOf(shape, text_bytes);
  return Contest(ShapeContestant(shape, text_bytes), Memcpy(Bytes(text.begin(), text.end())));
}

}  // namespace zrt_bench
