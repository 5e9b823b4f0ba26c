// What the tests share that stands on the contracts alone: a way to the private members of the
// evaluator, and streams in the notation of people, "0ABC/12" for the 12 bits ABC in two bytes.
#pragma once

#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ZRTExpression.h"

// Each file that includes this opens them for itself: an explicit instantiation may stand only once
// in a program.
// NOLINTBEGIN(google-build-namespaces,misc-definitions-in-headers)
namespace {

// Access is not checked in an explicit instantiation, so its argument may name a private member,
// which the friend then hands out: SolveFloatExpression(expression, "1+2", &value).
template <typename Tag, typename Tag::Type kMember>
struct Opened {
  friend constexpr typename Tag::Type Member(Tag /*tag*/) { return kMember; }
};

#define ZRT_OPEN_PRIVATE(name, ...)                                  \
  struct name##Tag {                                                 \
    using Type = std::type_identity_t<__VA_ARGS__> ZRTExpression::*; \
    friend constexpr Type Member(name##Tag);                         \
  };                                                                 \
  template struct Opened<name##Tag, &ZRTExpression::name>;           \
  [[maybe_unused]] constexpr auto name = std::mem_fn(Member(name##Tag{}))

ZRT_OPEN_PRIVATE(ProcessException, int(int, unsigned long, const char*));
ZRT_OPEN_PRIVATE(SetErrorInstruction, void(char*));
ZRT_OPEN_PRIVATE(GetLeftMostOperator, int(const char*, unsigned short*));
ZRT_OPEN_PRIVATE(GetRightMostOperator, int(const char*, unsigned short*));
ZRT_OPEN_PRIVATE(GetSubExpression, int(char*, int, int*));
ZRT_OPEN_PRIVATE(IsNumber, int(const char*));
ZRT_OPEN_PRIVATE(IsHexDigit, bool(char));
ZRT_OPEN_PRIVATE(SearchToken, ZRTTokens*(char*));
ZRT_OPEN_PRIVATE(GetTokenFromTree, ZRTTokens*(ZRTTokenTree*, char*));
ZRT_OPEN_PRIVATE(IsIgnoreInst, bool(char*));
ZRT_OPEN_PRIVATE(IsToken, bool(const char*));
ZRT_OPEN_PRIVATE(SolveIntegerExpression, int(const char*, int*));
ZRT_OPEN_PRIVATE(ExecuteIntegerOperator, int(int*, unsigned short, int));
ZRT_OPEN_PRIVATE(SolveFloatExpression, int(const char*, float*));
ZRT_OPEN_PRIVATE(GetFloatValue, int(char*, float*));
ZRT_OPEN_PRIVATE(ExecuteFloatOperator, int(float*, unsigned short, float));
ZRT_OPEN_PRIVATE(GetBitStreamValue, int(char*, RowDataStream*));
ZRT_OPEN_PRIVATE(ExecuteBitStreamOperator, int(RowDataStream*, unsigned short, RowDataStream*));
ZRT_OPEN_PRIVATE(ErrorInstruction, char*);

}  // namespace
// NOLINTEND(google-build-namespaces,misc-definitions-in-headers)

/// Whether tests that take gigabytes are wanted.
inline bool IsHuge() { return std::getenv("ZRT_HUGE") != nullptr; }

/// Bytes and bit length from "0ABC/12". The bytes need not agree with the length.
struct Bits {
  explicit Bits(std::string_view notation) {
    const std::size_t slash = notation.find('/');
    for (std::size_t i = 0; i + 1 < slash; i += 2) {
      bytes.push_back(
          static_cast<unsigned char>(std::stoi(std::string(notation.substr(i, 2)), nullptr, 16)));
    }
    bit_length = std::stoi(std::string(notation.substr(slash + 1)));
  }

  std::vector<unsigned char> bytes;
  int bit_length = 0;
};

/// Appends bytes and sets the bit length, as a host does it: a block at a time.
inline void Fill(RowDataStream& stream, std::string_view notation) {
  const Bits bits(notation);
  for (const unsigned char b : bits.bytes) {
    LByteBuffer* last = stream.GetLastBlock(&stream);
    if (last->WriteData(b) == 0) last->AllocateNewBlock()->WriteData(b);
  }
  stream.BitLength = bits.bit_length;
}

/// A stream as "0ABC/12"; "/0" is the empty one.
inline std::string Hex(RowDataStream& stream) {
  std::string text;
  for (unsigned i = 0; i < stream.GetTotalSize(); ++i) {
    const unsigned char b = stream.ReadData(static_cast<int>(i));
    text += {util_Hex2HexAnsi(b / 16), util_Hex2HexAnsi(b % 16)};
  }
  return text + "/" + std::to_string(stream.BitLength);
}

/// The value of `text` as "0ABC/12", or its status as "-511".
inline std::string Evaluate(ZRTExpression& expression, const char* text) {
  RowDataStream stream;
  const int status = expression.GetBitStream(text, &stream);
  return status == 0 ? Hex(stream) : std::to_string(status);
}
