// The library as contestant: an evaluator over scopes of a few names each, so that every literal is
// asked for as a name in all of them first. Public calls only.
#pragma once

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "empty_world.h"
#include "measure.h"

namespace zrt_bench {

using Bytes = std::vector<unsigned char>;

/// What the names a, b, c, i, t, x and y of the subjects stand for, here and at each peer.
struct Names {
  static constexpr int kA = 5, kB = 7, kC = 3, kI = 2;
  static constexpr int kT[] = {3, 1, 4, 15, 9, 26};
  static constexpr float kX = 2.5F, kY = 0.75F;
};

struct World : ::World {
  World() {
    local_tokens.Add(ZRTTokens::IntScalar("a", Names::kA));
    local_tokens.Add(ZRTTokens::IntScalar("b", Names::kB));
    local_tokens.Add(ZRTTokens::IntScalar("c", Names::kC));
    local_tokens.Add(ZRTTokens::IntScalar("i", Names::kI));
    local_tokens.Add(ZRTTokens::IntArray("t", {std::begin(Names::kT), std::end(Names::kT)}));
    local_tokens.Add(ZRTTokens::FloatScalar("x", Names::kX));
    local_tokens.Add(ZRTTokens::FloatScalar("y", Names::kY));
    global_tokens.Add(ZRTTokens::IntScalar("rows", 12));
    global_tokens.Add(ZRTTokens::IntScalar("cols", 48));
    global_tokens.Add(ZRTTokens::FloatScalar("voltage", 3.3F));
    external_data.AddField("usercode")->AddRow(32, {0xDE, 0xAD, 0xBE, 0xEF});
    external_data.AddField("id")->AddRow(8, {0x5A});
    local_data.AddField("fuses")->AddRow(8, {0xF0});
    global_data.AddField("mask")->AddRow(8, {0xFF});
    global_data.AddField("lock")->AddRow(8, {0x01});
  }
};

/// Fields of one row each, in the local scope.
using Rows = std::vector<std::pair<const char*, Bytes>>;

inline Rows OneRow(const Bytes& row) {
  Rows rows;
  rows.emplace_back("row", row);
  return rows;
}

/// "-511": a status in the place of a value.
inline std::string StatusText(int status) { return "status " + std::to_string(status); }

inline Bytes RandomBytes(std::size_t byte_count, unsigned seed = 1) {
  std::mt19937_64 random(seed);
  Bytes bytes(byte_count);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random() >> 32U);
  return bytes;
}

inline std::string AsText(const unsigned char* bytes, std::size_t byte_count) {
  return {reinterpret_cast<const char*>(bytes), byte_count};
}

/// "0x" and two digits a byte, capitals.
inline std::string Literal(const unsigned char* bytes, std::size_t byte_count) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "0x";
  text.reserve(2 * byte_count + 2);
  for (std::size_t i = 0; i < byte_count; ++i) {
    text += kDigits[bytes[i] / 16];
    text += kDigits[bytes[i] % 16];
  }
  return text;
}

/// What a contestant of bits works on.
struct BitsWork : World {
  BitsWork(std::string text_to_evaluate, const Rows& rows, int spare_bits)
      : text(std::move(text_to_evaluate)) {
    for (const auto& [name, bytes] : rows) {
      const int bit_count = static_cast<int>(8 * bytes.size()) - spare_bits;
      local_data.AddField(name)->AddRow(bit_count, bytes);
    }
  }

  std::string text;
  RowDataStream stream;
  std::string hex_text;
  int status = 0;
};

/// `text` evaluated into a stream that has its room from the evaluation before. Its value is the
/// stream's bytes. Each row has `spare_bits` fewer bits than its bytes.
inline Contestant TextToStream(std::string text, const Rows& rows = {}, int spare_bits = 0,
                               std::string name = "this library", Role role = Role::kLibrary) {
  auto work = std::make_shared<BitsWork>(std::move(text), rows, spare_bits);
  const auto evaluate = [work] {
    work->stream.ClearBuffer();
    work->stream.BitLength = 0;
    work->status = work->expression.GetBitStream(work->text.c_str(), &work->stream);
  };
  const auto value = [work] {
    if (work->status != 0) return StatusText(work->status);
    return AsText(work->stream.GetDataBlock(), work->stream.GetTotalSize());
  };
  return MakeContestant(std::move(name), role, evaluate, value);
}

/// `text` evaluated into hexadecimal text of at most `byte_count` bytes. Its value is that text.
inline Contestant TextToText(std::string text, std::size_t byte_count, const Rows& rows = {}) {
  auto work = std::make_shared<BitsWork>(std::move(text), rows, 0);
  work->hex_text.resize(2 * byte_count + 3);
  const auto evaluate = [work] {
    work->status = work->expression.GetBitStream(work->text.c_str(), work->hex_text.data());
  };
  const auto value = [work] {
    if (work->status != 0) return StatusText(work->status);
    return work->hex_text.substr(0, work->hex_text.find('\0'));
  };
  return MakeContestant("this library", Role::kLibrary, evaluate, value);
}

/// The limit of work on bytes: as many are copied. Tells a value only if the bytes are one.
inline Contestant Memcpy(Bytes bytes, bool is_value = false) {
  const auto from = std::make_shared<Bytes>(std::move(bytes));
  const auto to = std::make_shared<Bytes>(from->size());
  const auto copy = [from, to] { std::memcpy(to->data(), from->data(), from->size()); };
  std::function<std::string()> value;
  if (is_value) value = [to] { return AsText(to->data(), to->size()); };
  return MakeContestant("memcpy", Role::kLimit, copy, value);
}

}  // namespace zrt_bench
