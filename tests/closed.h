// How a host fills the closed libraries, here the stand-ins, and what they do where their contract
// leaves it open. contract/ has a header of this name, for the libraries of that folder.
#pragma once

#include <string>
#include <vector>

#include "environment.h"
#include "qlmplusdata.h"
#include "reference.h"
#include "zrttokentree.h"

inline void AddToken(ZRTTokenTree& tree, const std::string& name, int type,
                     const std::vector<int>& ints, const std::vector<float>& floats = {}) {
  const auto code = static_cast<unsigned short>(type);
  tree.Add(floats.empty() ? ZRTTokens::IntArray(name.c_str(), ints, code)
                          : ZRTTokens::FloatArray(name.c_str(), floats, code));
}
inline QLMDataField* AddField(QLMPlusData& data, const std::string& name) {
  return data.AddField(name.c_str());
}
inline std::string NameOf(const QLMDataField& field) { return field.GetFieldName(); }
inline void SetBlockSize(int byte_count) { LByteBuffer::SetDefaultBlockSize(byte_count); }

inline constexpr reference::Closed kClosed;
/// What runs out in this build of the tests.
inline constexpr bool kIsMemoryShort = true;
inline Supply& Scarce() { return memory; }
