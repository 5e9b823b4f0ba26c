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
  data.Append(std::vector<unsigned char>(bytes.begin(), bytes.end()));
  std::string text(2 * bytes.size() + 4, '|');
  fnGetDataExpression(&data, text.data());
  if (text.back() != '|') return "no room";
  text.resize(text.find('\0'));
  if (text.empty()) return text;
  ZRTExpression expression;
  RowDataStream stream;
  const int status = expression.GetBitStream(text.c_str(), &stream);
  const std::vector<unsigned char> back = BytesOf(stream);
  const bool is_sized = static_cast<std::size_t>(stream.BitLength) == 8 * bytes.size();
  return status == 0 && is_sized && back == std::vector<unsigned char>(bytes.begin(), bytes.end())
             ? text
             : "not read back";
}
