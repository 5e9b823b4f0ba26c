// The run-length writer and the way back, for tests and fuzzing.
#pragma once

#include <string>

#include "DataExpression.h"
#include "support.h"

/// The text of `bytes`, from blocks of that size; 0 is one block. "no room" if it writes behind the
/// room it asks for, "not read back" if evaluation does not give the bytes again.
inline std::string RoundTrip(const std::string& bytes, int block_size) {
  const BlockSize setting(block_size);
  LByteBuffer data;
  LByteBuffer* block = &data;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (block->WriteData(byte) == 0) (block = block->AllocateNewBlock())->WriteData(byte);
  }
  std::string text(2 * bytes.size() + 4, '|');
  fnGetDataExpression(&data, text.data());
  if (text.back() != '|') return "no room";
  text.resize(text.find('\0'));
  if (text.empty()) return text;
  ZRTExpression expression;
  RowDataStream stream;
  const int status = expression.GetBitStream(text.c_str(), &stream);
  std::string back;
  for (unsigned i = 0; i < stream.GetTotalSize(); ++i) {
    back += static_cast<char>(stream.ReadData(static_cast<int>(i)));
  }
  const bool is_sized = static_cast<std::size_t>(stream.BitLength) == 8 * bytes.size();
  return status == 0 && is_sized && back == bytes ? text : "not read back";
}
