// What the tests share that stands on the stand-ins: scopes, blocks of any size, directories. Knows
// nothing of a single test.
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

#include "contract_support.h"
#include "empty_world.h"
#include "text_generator.h"

inline std::string Repeated(const std::string& piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

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
