// What the tests share that stands on the contracts of the closed libraries: streams in the
// notation of people, "0ABC/12" for the 12 bits ABC in two bytes, scopes, blocks of any size,
// directories. Knows nothing of a single test. Private members are open to the tests, by an option
// of the compiler.
#pragma once

#include <closed.h>  // the one of contract/, where the tests are built over that folder

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "ZRTExpression.h"
#include "empty_world.h"
#include "reference.h"

// Where the tests' files are, from the top of the project if nothing else is said.
#ifndef ZRT_TESTS
#define ZRT_TESTS "tests"
#endif

using Bytes = reference::Bytes;
using Stream = reference::Stream;

/// Whether what takes gigabytes is tried too.
inline bool IsHuge() { return std::getenv("ZRT_HUGE") != nullptr; }

inline std::string Repeated(const std::string& piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

/// A stream from "0ABC/12". The bytes need not agree with the length.
inline Stream FromText(const std::string& notation) {
  Stream stream;
  const std::size_t slash = notation.find('/');
  for (std::size_t i = 0; i + 1 < slash; i += 2) {
    stream.bytes.push_back(
        static_cast<std::uint8_t>(std::stoi(notation.substr(i, 2), nullptr, 16)));
  }
  stream.bit_length = std::stoi(notation.substr(slash + 1));
  return stream;
}

/// And back; "/0" is the empty one.
inline std::string Show(const Stream& stream) {
  std::string text;
  for (const std::uint8_t byte : stream.bytes) {
    text += {"0123456789ABCDEF"[byte / 16], "0123456789ABCDEF"[byte % 16]};
  }
  return text + "/" + std::to_string(stream.bit_length);
}

/// Appends bytes as a host does it: a block at a time.
inline void Fill(LByteBuffer& buffer, const Bytes& bytes) {
  LByteBuffer* last = buffer.GetLastBlock(&buffer);
  for (const std::uint8_t byte : bytes) {
    if (last->WriteData(byte) == 0) (last = last->AllocateNewBlock())->WriteData(byte);
  }
}
inline void Fill(RowDataStream& buffer, const Stream& stream) {
  Fill(static_cast<LByteBuffer&>(buffer), stream.bytes);
  buffer.BitLength = stream.bit_length;
}

inline Bytes BytesOf(LByteBuffer& buffer) {
  Bytes bytes(buffer.GetTotalSize());
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = buffer.ReadData(static_cast<int>(i));
  return bytes;
}
inline Stream StreamOf(RowDataStream& stream) { return {BytesOf(stream), stream.BitLength}; }
inline std::string Show(RowDataStream& stream) { return Show(StreamOf(stream)); }

/// The value of `text` as "0ABC/12", or its status as "-511".
inline std::string Evaluate(ZRTExpression& expression, const char* text) {
  RowDataStream stream;
  const int status = expression.GetBitStream(text, &stream);
  return status == 0 ? Show(stream) : std::to_string(status);
}

/// The members of a World or of the reference's scope, by the names that world.txt has for them.
auto& TreeOf(auto& scopes, std::string_view name) {
  return name == "local_tokens" ? scopes.local_tokens : scopes.global_tokens;
}
auto& DataOf(auto& scopes, std::string_view name) {
  return name == "external_data" ? scopes.external_data
         : name == "local_data"  ? scopes.local_data
                                 : scopes.global_data;
}

/// A token or a data field of world.txt.
struct Named {
  std::string scope, name;
  reference::Token token;
  std::vector<Stream> rows;
  bool is_data = false;
};

/// All of them, and a long name, which finds no place on the stack.
inline std::vector<Named> NamesOfWorld() {
  std::vector<Named> names = {
      {"local_tokens", std::string(300, 'n'), {2, {3}, {}}, {}}
  };
  std::ifstream file(ZRT_TESTS "/world.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    auto& [scope, name, token, rows, is_data] = names.emplace_back();
    words >> scope >> std::quoted(name);
    is_data = scope.ends_with("data");
    if (!is_data) words >> token.type;
    for (std::string word; words >> word;) {
      std::istringstream number(word);
      if (is_data) {
        rows.push_back(FromText(word));
      } else if (word.find_first_of(".n") == std::string::npos) {
        number >> token.ints.emplace_back();
      } else if (!(number >> token.floats.emplace_back())) {
        token.floats.back() = word == "nan" ? NAN : word == "inf" ? INFINITY : -INFINITY;
      }
    }
  }
  return names;
}

inline void AddRows(QLMPlusData& data, const std::string& name, const std::vector<Stream>& rows) {
  QLMDataField* field = AddField(data, name);
  for (const auto& [bytes, bit_length] : rows) Fill(*field->AddRow(bit_length), bytes);
}

/// What world.txt holds.
struct RichWorld : World {
  RichWorld() {
    for (const auto& [scope, name, token, rows, is_data] : NamesOfWorld()) {
      if (is_data) AddRows(DataOf(*this, scope), name, rows);
      if (!is_data) AddToken(TreeOf(*this, scope), name, token.type, token.ints, token.floats);
    }
  }
};

/// Streams made in its lifetime have blocks of that many bytes; 0 lets them grow.
struct BlockSize {
  explicit BlockSize(int byte_count) { SetBlockSize(byte_count); }
  BlockSize(const BlockSize&) = delete;
  BlockSize& operator=(const BlockSize&) = delete;
  ~BlockSize() { SetBlockSize(0); }
};

/// A directory for one test, with an error list if it is given one, gone at the end.
struct Directory {
  explicit Directory(const char* list = nullptr)
      : name(std::filesystem::temp_directory_path() / "zrt_XXXXXX"), path(mkdtemp(name.data())) {
    if (list) std::ofstream(name + "/ErrorList.txt") << list;
  }
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory() { std::filesystem::remove_all(name); }

  std::string name;
  char* path;
};
