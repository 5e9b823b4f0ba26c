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
constexpr const char* kPieces = "Joined bytes";
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
  constexpr Kind kInt = Kind::kInteger, kBits = Kind::kBits;
  static const std::vector<Shape> shapes = {
      {"chain 1+1",            kNumbers,   kInt,         "1+",           "1",    "",       0,                        1,  1},
      {"floats 1.0*1",         kNumbers,   Kind::kFloat, "1.0*",         "1",    "",       0,                        0,  1},
      {"groups (1)+1",         kNumbers,   kInt,         "(1)+",         "1",    "",       0,                        1,  1},
      {"left ((1)+1)+1",       kNumbers,   kInt,         "(",            "1",    ")+1",    0,                        1,  1},
      {"right 1+(1+(1))",      kNumbers,   kInt,         "1+(",          "1",    ")",      0,                        1,  1},
      {"nested (((1)))",       kNumbers,   kInt,         "(",            "1",    ")",      0,                        0,  1},
      {"unary ~1+~1",          kNumbers,   kInt,         "~1+",          "1",    "",       0,                        -2, 1},
      {"indexes t[1]+1",       kNumbers,   kInt,         "t[1]+",        "1",    "",       0,                        1,  1},
      {"unclosed (((1",        kFailures,  kInt,         "(",            "1",    "",       ErrUnbalancedParenthesis, 0,  0},
      {"stray ~~1]]",          kFailures,  kInt,         "~",            "1",    "]",      ErrStrayCloseBracket,     0,  0},
      {"nested t[t[1]]",       kFailures,  kInt,         "t[",           "1",    "]",      ErrNegativeIndex,         0,  0},
      {"flat",                 kPieces,    kBits,        "0x5A@",        "0x5A", "",       0,                        8,  8},
      {"groups",               kPieces,    kBits,        "(0x5A)@",      "0x5A", "",       0,                        8,  8},
      {"mixed",                kPieces,    kBits,        "0x5A@(0x5A)@", "0x5A", "",       0,                        16, 8},
      {"left-nested",          kPieces,    kBits,        "(",            "0x5A", ")@0x5A", 0,                        8,  8},
      {"right-nested",         kPieces,    kBits,        "0x5A@(",       "0x5A", ")",      0,                        8,  8},
      {"unary",                kPieces,    kBits,        "~0x5A@",       "0x5A", "",       0,                        8,  8},
      {"flat, 3 bits",         kBitPieces, kBits,        "#101@",        "#101", "",       0,                        3,  3},
      {"groups, 3 bits",       kBitPieces, kBits,        "(#101)@",      "#101", "",       0,                        3,  3},
      {"mixed, 3 bits",        kBitPieces, kBits,        "#101@(#101)@", "#101", "",       0,                        6,  3},
      {"left-nested, 3 bits",  kBitPieces, kBits,        "(",            "#101", ")@#101", 0,                        3,  3},
      {"right-nested, 3 bits", kBitPieces, kBits,        "#101@(",       "#101", ")",      0,                        3,  3},
      {"unary, 3 bits",        kBitPieces, kBits,        "~#101@",       "#101", "",       0,                        3,  3},
  };
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
