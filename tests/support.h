// What the tests share: a way to the private members of the evaluator, scopes, and streams in the
// notation of people, "0ABC/12" for the 12 bits ABC in two bytes. Knows nothing of a single test.
#pragma once

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ZRTExpression.h"
#include "text_generator.h"

// Each file that includes this opens them for itself: an explicit instantiation may stand only once
// in a program.
namespace {  // NOLINT(google-build-namespaces)

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

// NOLINTBEGIN(misc-definitions-in-headers): for each file its own, see above
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
// NOLINTEND(misc-definitions-in-headers)

}  // namespace

/// All five scopes, empty at first, and an evaluator that looks at them.
struct World {
  World() {
    expression.SetLocalTokenTree(&local_tokens);
    expression.SetGlobalTokenTree(&global_tokens);
    expression.SetExternalZRTData(&external_data);
    expression.SetLocalZRTData(&local_data);
    expression.SetGlobalZRTData(&global_data);
  }

  ZRTTokenTree local_tokens, global_tokens;
  QLMPlusData external_data, local_data, global_data;
  ZRTExpression expression;
};

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

/// Adds rows, each as "0ABC/12", to the field of that name.
inline QLMDataField* AddRows(QLMPlusData& data, const char* name,
                             const std::vector<const char*>& rows) {
  QLMDataField* field = data.AddField(name);
  for (const char* row : rows) field->AddRow(Bits(row).bit_length, Bits(row).bytes);
  return field;
}

/// Names of every kind, hidden, of odd types and widths, with rows that agree and that do not.
struct RichToken {
  ZRTTokenTree World::*tree;
  const char* name;
  unsigned short type;
  std::vector<int> ints;
  std::vector<float> floats;
};
inline const std::vector<RichToken> kRichTokens = {
    {&World::local_tokens,  "n",             2, {2},               {}                 },
    {&World::global_tokens, "n",             2, {100},             {}                 },
    {&World::local_tokens,  "neg",           4, {-2},              {}                 },
    {&World::global_tokens, "size",          4, {8},               {}                 },
    {&World::global_tokens, "low",           2, {-2147483647 - 1}, {}                 },
    {&World::global_tokens, "ones",          4, {-1},              {}                 },
    {&World::local_tokens,  "hidden",        2, {7},               {}                 },
    {&World::local_tokens,  "10",            2, {99},              {}                 },
    {&World::global_tokens, "my name",       2, {3},               {}                 },
    {&World::global_tokens, "FuseArray_TDI", 2, {5},               {}                 },
    {&World::global_tokens, "ID_MASK",       2, {6},               {}                 },
    {&World::local_tokens,  "f",             1, {},                {2.5F}             },
    {&World::global_tokens, "wide",          3, {},                {-3e9F}            },
    {&World::global_tokens, "nan",           3, {},                {NAN}              },
    {&World::global_tokens, "e",             1, {},                {-0.5F}            },
    {&World::local_tokens,  "t",             6, {10, 20, 30},      {}                 },
    {&World::local_tokens,  "t8",            8, {1, -1, 2, 0},     {}                 },
    {&World::global_tokens, "fa",            5, {},                {1.5F, -2.5F, 3e9F}},
    {&World::global_tokens, "f7",            7, {},                {INFINITY, 0.25F}  },
    {&World::global_tokens, "odd",           9, {1},               {}                 },
    {&World::global_tokens, "zero",          0, {1},               {}                 },
    {&World::local_tokens,  "mixed",         1, {4},               {}                 },
    {&World::local_tokens,  "mixes",         8, {},                {4.5F}             },
};

struct RichField {
  QLMPlusData World::*data;
  const char* name;
  std::vector<const char*> rows;
};
inline const std::vector<RichField> kRichFields = {
    {&World::external_data, "A",               {"11/8", "22/8"}                            },
    {&World::local_data,    "A",               {"EE/8"}                                    },
    {&World::local_data,    "B",               {"11/8", "22/8", "33/8", "44/8"}            },
    {&World::local_data,    "Three",           {"05/3", "02/3", "03/2"}                    },
    {&World::global_data,   "Three",           {"FF/8"}                                    },
    {&World::global_data,   "hidden",          {"0ABC/12"}                                 },
    {&World::global_data,   "Long",            {"0102030405060708090A/75"}                 },
    {&World::global_data,   "Spare",           {"FFFF/12"}                                 },
    {&World::global_data,   "Spares",          {"FA/3", "0ABC/11", "FF00/9"}               },
    {&World::global_data,   "More",            {"AABB/8"}                                  },
    {&World::global_data,   "Less",            {"AB/24"}                                   },
    {&World::local_data,    "Odd",             {"/0", "/5", "AABB/0", "010203/17", "01/20"}},
    {&World::external_data, "Bit",             {"01/1"}                                    },
    {&World::external_data, "77",              {"0000004D/32"}                             },
    {&World::local_data,    "FuseArray_DMASK", {"0F/4"}                                    },
    {&World::global_data,   "None",            {}                                          },
};

inline NameLists RichNames() {
  NameLists names;
  for (const RichField& field : kRichFields) names.fields.emplace_back(field.name);
  for (const RichToken& token : kRichTokens) {
    (token.type < 5 ? names.scalars : names.arrays).emplace_back(token.name);
  }
  names.others = {"ID_MASK", "FuseArray_DMASK", "FuseArray_TDO", "FuseArray_TDI", "nosuch",
                  "",        "low%ones"};
  return names;
}

struct RichWorld : World {
  RichWorld() {
    for (const auto& [tree, name, type, ints, floats] : kRichTokens) {
      (this->*tree)
          .Add(floats.empty() ? ZRTTokens::IntArray(name, ints, type)
                              : ZRTTokens::FloatArray(name, floats, type));
    }
    for (const auto& [data, name, rows] : kRichFields) AddRows(this->*data, name, rows);
  }
};

inline std::vector<unsigned char> BytesOf(LByteBuffer& source) {
  std::vector<unsigned char> bytes(source.GetTotalSize());
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = source.ReadData(static_cast<int>(i));
  return bytes;
}

/// Appends bytes and sets the bit length.
inline void Fill(RowDataStream& stream, std::string_view notation) {
  stream.Append(Bits(notation).bytes);
  stream.BitLength = Bits(notation).bit_length;
}

/// A stream as "0ABC/12"; "/0" is the empty one.
inline std::string Hex(RowDataStream& stream) {
  std::string text;
  for (const unsigned char b : BytesOf(stream)) {
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

/// Streams made in its lifetime have blocks of that many bytes; 0 lets them grow.
class BlockSize {
 public:
  explicit BlockSize(int size) : before_(LByteBuffer::GetDefaultBlockSize()) {
    LByteBuffer::SetDefaultBlockSize(size);
  }
  BlockSize(const BlockSize&) = delete;
  BlockSize& operator=(const BlockSize&) = delete;
  ~BlockSize() { LByteBuffer::SetDefaultBlockSize(before_); }

 private:
  int before_;
};

/// A directory for one test, with an error list if it is given one, gone at the end.
class Directory {
 public:
  explicit Directory(const char* list = nullptr) {
    std::string name = std::filesystem::temp_directory_path() / "zrt_XXXXXX";
    path_ = mkdtemp(name.data());
    if (list) std::ofstream(path_ + "/ErrorList.txt") << list;
  }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() { std::filesystem::remove_all(path_); }
  char* path() { return path_.data(); }

 private:
  std::string path_;
};
